#pragma once

#include "VelmoCore/Home/HomeCard.h"
#include "VelmoUI/Design/RecordListModel.h"
#include "VelmoUI/Modules/Frame/ModuleRegistry.h"
#include "VelmoUI/Modules/Frame/PageCommand.h"
#include "VelmoUI/Modules/Home/FavoritesModel.h"
#include "VelmoUI/Modules/Home/HomeCardSources.h"

#include <QtQml/qqmlregistration.h>

#include <map>

namespace velmo {

/// A card of Home, on one of its pages.
struct HomeCardRow {
    QString id;
    QString title;
    double width = 0; ///< points
    int page = 0;
    QUrl source;
    ModulePage *content = nullptr; ///< what the card shows; Home's
    QString module;                ///< that the card opens; empty for none

    bool operator==(const HomeCardRow &) const = default;
};
BOOST_DESCRIBE_STRUCT(HomeCardRow, (), (id, title, width, page, source, content, module))

/// How something is begun, for whoever sees an empty Home.
struct HomeTip {
    QString id;
    QString symbol;
    QString title;
    QString detail;

    bool operator==(const HomeTip &) const = default;
};
BOOST_DESCRIBE_STRUCT(HomeTip, (), (id, symbol, title, detail))

/// Home as one panel shows it.
class HomePageModel : public velmo::ModulePage {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by its module")
    Q_PROPERTY(QAbstractItemModel *cards READ cards CONSTANT)
    Q_PROPERTY(bool isEmpty READ isEmpty NOTIFY changed)
    Q_PROPERTY(int pageCount READ pageCount NOTIFY changed)
    Q_PROPERTY(int pageIndex READ pageIndex WRITE setPageIndex NOTIFY changed)
    Q_PROPERTY(bool hasWelcome READ hasWelcome NOTIFY changed)
    Q_PROPERTY(qreal welcomeWidth READ welcomeWidth NOTIFY changed)
    /// What can be done with the card that was asked about last.
    Q_PROPERTY(QAbstractItemModel *commands READ commands CONSTANT)
    /// What an empty Home teaches, as it is set now.
    Q_PROPERTY(QAbstractItemModel *tips READ tips CONSTANT)
    /// The favourites for which applications are being chosen, in place of the cards; null for
    /// none.
    Q_PROPERTY(velmo::FavoritesModel *picking READ picking NOTIFY pickingChanged)
    /// The place of the setting among "Nada", "Prévia" and "Abrir".
    Q_PROPERTY(int hoverBehavior READ hoverBehavior WRITE setHoverBehavior NOTIFY changed)

public:
    /// All of them outlive this object.
    HomePageModel(const HomeCardSources &sources, HotKeyController &hotKeys, PanelPort &panel);
    ~HomePageModel() override;

    QAbstractItemModel *cards() { return &m_cards; }
    bool isEmpty() const { return m_cards.rowCount() == 0 && !hasWelcome(); }
    int pageCount() const { return m_pageCount; }
    int pageIndex() const { return m_pageIndex; }
    /// The nearest page there is.
    void setPageIndex(int index);
    bool hasWelcome() const;
    qreal welcomeWidth() const { return m_welcomeWidth; }
    QAbstractItemModel *commands() { return &m_commands; }
    QAbstractItemModel *tips() { return &m_tips; }
    FavoritesModel *picking() const;
    int hoverBehavior() const;
    void setHoverBehavior(int place);

    /// How wide a page is and how far apart its cards stand, in points.
    Q_INVOKABLE void setWidth(qreal width, qreal gap);
    /// Goes to the next or previous page once the wheel has turned a notch: 120 eighths of a
    /// degree, positive to the previous one.
    Q_INVOKABLE void turnWheel(int angle);
    Q_INVOKABLE void openModule(const QString &id);
    Q_INVOKABLE void askAbout(const QString &card);
    Q_INVOKABLE void run(const QString &command, const QString &card);
    Q_INVOKABLE void openSettings();
    Q_INVOKABLE void chooseCards();
    Q_INVOKABLE void finishOnboarding();

Q_SIGNALS:
    void changed();
    void pickingChanged();

private:
    void watch(bool isWatched) override;
    /// Cards on the page on show are watched.
    void watchCards();
    /// Of the row with that id.
    const NotchModule::View &view(const QString &id,
                                  const std::function<NotchModule::View(PanelPort &)> &make);
    /// What stands behind the card and can be gone to; null for none.
    const NotchModule *moduleOf(const QString &card) const;
    void hide(const QString &card);
    void update();
    void layOut();
    void updateTips();

    const HomeCardSources m_sources;
    SettingsStore &m_settings;
    HotKeyController &m_hotKeys;
    PanelPort &m_panel;
    std::map<QString, NotchModule::View> m_views; ///< by the row's id
    RecordListModel<HomeCardRow> m_cards;
    RecordListModel<PageCommand> m_commands;
    RecordListModel<HomeTip> m_tips;
    double m_width = 0;
    double m_gap = 0;
    double m_welcomeWidth = 0;
    int m_wheelAngle = 0;
    int m_pageCount = 1;
    int m_pageIndex = 0;
};

} // namespace velmo
