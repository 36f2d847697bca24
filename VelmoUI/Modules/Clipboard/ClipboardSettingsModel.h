#pragma once

#include "VelmoCore/Settings/SettingsStore.h"
#include "VelmoUI/Design/RecordListModel.h"

#include <QObject>
#include <QStringList>
#include <QtQml/qqmlregistration.h>

namespace velmo {

class Applications;
class ClipboardStore;

/// An application from which nothing is taken, or could be.
struct IgnoredAppRow {
    QString id; ///< the identifier in the settings; of what a search finds, the desktop entry's
    QString title;
    QString icon;   ///< an address of its picture; none if it isn't installed
    QString detail; ///< why it is there, where the user didn't add it
    QString spoken; ///< for screen readers

    bool operator==(const IgnoredAppRow &) const = default;
};
BOOST_DESCRIBE_STRUCT(IgnoredAppRow, (), (id, title, icon, detail, spoken))

/// The settings of the clipboard's history: how much of it stays, and what never comes in.
class ClipboardSettingsModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the settings window")
    Q_PROPERTY(QStringList countChoices READ countChoices NOTIFY limitsChanged)
    Q_PROPERTY(int countIndex READ countIndex NOTIFY limitsChanged)
    Q_PROPERTY(QStringList retentionChoices READ retentionChoices NOTIFY limitsChanged)
    Q_PROPERTY(int retentionIndex READ retentionIndex NOTIFY limitsChanged)
    /// "12 itens"
    Q_PROPERTY(QString kept READ kept NOTIFY keptChanged)
    Q_PROPERTY(QAbstractItemModel *ignored READ ignored CONSTANT)
    /// Whether a built-in one isn't ignored any more.
    Q_PROPERTY(bool canRestore READ canRestore NOTIFY ignoredChanged)
    /// The first few installed applications that the search finds and that aren't ignored.
    Q_PROPERTY(QAbstractItemModel *found READ found CONSTANT)
    /// "Nenhum aplicativo encontrado" after a search in vain, else empty.
    Q_PROPERTY(QString foundNote READ foundNote NOTIFY foundChanged)

public:
    /// All of them outlive this object.
    ClipboardSettingsModel(ClipboardStore &store, SettingsStore &settings,
                           Applications &applications);

    QStringList countChoices() const;
    int countIndex() const;
    QStringList retentionChoices() const;
    int retentionIndex() const;
    QString kept() const;
    QAbstractItemModel *ignored() { return &m_ignored; }
    bool canRestore() const;
    QAbstractItemModel *found() { return &m_found; }
    QString foundNote() const;

    /// Reads again which applications there are, and ends the search.
    Q_INVOKABLE void refresh();
    Q_INVOKABLE void setCount(int index);
    Q_INVOKABLE void setRetention(int index);
    /// Removes what is neither pinned nor a favourite nor in a collection.
    Q_INVOKABLE void clear();

    /// An empty text finds nothing.
    Q_INVOKABLE void search(const QString &text);
    /// Ignores the application of that desktop entry, and ends the search.
    Q_INVOKABLE void add(const QString &desktopID);
    /// Does so with the first that was found.
    Q_INVOKABLE void addFirst();
    Q_INVOKABLE void remove(int row);
    /// Restores the built-in ones.
    Q_INVOKABLE void restore();

Q_SIGNALS:
    void limitsChanged();
    void keptChanged();
    void ignoredChanged();
    void foundChanged();

private:
    const AppSettings &settings() const;
    void updateIgnored();
    void updateFound();

    ClipboardStore &m_store;
    SettingsStore &m_settings;
    Applications &m_applications;
    RecordListModel<IgnoredAppRow> m_ignored;
    RecordListModel<IgnoredAppRow> m_found;
    QString m_query;
    SettingsStore::Observation m_observer;
};

} // namespace velmo
