#pragma once

#include "VelmoCore/Home/HomeCard.h"
#include "VelmoCore/Permissions/PermissionKind.h"
#include "VelmoSystem/Control/VerbTable.h"
#include "VelmoSystem/Input/HotKeyController.h"
#include "VelmoUI/Modules/Frame/ModulePage.h"
#include "VelmoUI/Modules/Frame/PanelPort.h"

#include <QJsonValue>
#include <QStringList>
#include <QUrl>

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <vector>

class QQmlEngine;

namespace velmo {

/// Everything that one module adds to Orvane. One object a module for the run; it takes the
/// services it works with in its constructor.
class NotchModule : public QObject {
    Q_OBJECT

public:
    /// The QML that draws something and the object that it shows, as its property `page`.
    struct View {
        QUrl source;
        std::unique_ptr<ModulePage> page;
    };

    /// A card for Home.
    struct Card {
        HomeCard card = HomeCard::favorites;
        std::function<View(PanelPort &)> make; ///< the QML takes the object as `card`
        std::function<bool()> isActive = [] { return false; }; ///< whether it matters now
    };

    /// A card that stands before the others on Home for as long as there is something in it.
    struct Offer {
        QString title;
        double width = 0;                      ///< points
        std::function<View(PanelPort &)> make; ///< as of a card
        std::function<bool()> isShown;
    };

    /// What is next of it, for the preview of the collapsed panel.
    struct Peek {
        QString symbol;
        QString title;
        QString detail;

        bool operator==(const Peek &) const = default;
    };

    /// A section of a pane of the settings, whose QML takes what `make` gives as `model`.
    struct SettingsSection {
        SettingsPane pane = SettingsPane::modules;
        QUrl source;
        std::function<std::unique_ptr<QObject>()> make;
    };

    virtual QString id() const = 0;
    virtual QString title() const = 0;
    virtual QString symbol() const = 0;
    /// What the module works with only where it is granted.
    virtual std::vector<PermissionKind> permissions() const { return {}; }

    /// Runs before the page first shows. Throws `LocalizedError` where it can't work.
    virtual void activate() {}
    /// The width that the page asks for, in points; nothing for the panel's own. A page whose width
    /// changes says so by `PanelPort::contentWidthChanged`.
    virtual std::optional<double> contentWidth() const { return std::nullopt; }
    /// `panel` outlives the view.
    virtual View makeView(PanelPort &panel) = 0;

    virtual std::vector<Card> cards() { return {}; }
    virtual std::optional<Offer> offer() { return std::nullopt; }
    virtual std::optional<Peek> peek() const { return std::nullopt; }
    virtual std::vector<SettingsSection> settings() { return {}; }
    /// Where a global shortcut leads.
    virtual std::map<HotKeyAction, Route> hotKeys() const { return {}; }
    virtual std::vector<Verb> verbs() { return {}; }
    /// For scripts, in the status under the module's id; nothing without.
    virtual QJsonValue status() const { return QJsonValue::Undefined; }
    /// What went wrong, in sentences, until the user has read it.
    virtual QStringList issues() const { return {}; }
    virtual void dismissIssues() {}
    /// Adds what its QML needs of an engine, such as its pictures.
    virtual void prepare(QQmlEngine &) {}
    /// Begins what goes on without a page. Once, when every module is there.
    virtual void start() {}

Q_SIGNALS:
    /// Another of its cards matters now, or its offer came or went.
    void cardsChanged();
    void peekChanged();
    void issuesChanged();
    /// Of one of its nouns, as "clipboard"; `what` as "items".
    void contentChanged(const QString &noun, const QString &what);

protected:
    /// Announces what the module's verbs see change.
    VerbTable::Changed contentListener()
    {
        return
            [this](const QString &noun, const QString &what) { Q_EMIT contentChanged(noun, what); };
    }
};

} // namespace velmo
