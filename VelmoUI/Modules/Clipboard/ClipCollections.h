#pragma once

#include "VelmoCore/Clipboard/ClipItem.h"
#include "VelmoCore/Foundation/Uuid.h"
#include "VelmoUI/Design/RecordListModel.h"

#include <QtQml/qqmlregistration.h>

namespace velmo {

class ClipboardStore;

/// A line of the list of collections.
struct ClipCollectionRow {
    QString id; ///< "all", "favorites", a collection's id or "new"
    QString title;
    QString symbol;
    bool isSelected = false; ///< its items show; while collecting: it holds the item
    bool isOwn = false;      ///< made by the user
    bool isNamed = false;    ///< its name is being written

    bool operator==(const ClipCollectionRow &) const = default;
};
BOOST_DESCRIBE_STRUCT(ClipCollectionRow, (), (id, title, symbol, isSelected, isOwn, isNamed))

/// The collections of one Clipboard page: which one shows, and, while the user collects, which ones
/// hold an item.
class ClipCollections : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by its page")
    Q_PROPERTY(QAbstractItemModel *rows READ rows CONSTANT)
    /// Whether a choice puts an item into a collection or takes it out.
    Q_PROPERTY(bool isCollecting READ isCollecting NOTIFY changed)

public:
    explicit ClipCollections(ClipboardStore &store);

    QAbstractItemModel *rows() { return &m_rows; }
    bool isCollecting() const { return m_collected.has_value(); }
    /// The one whose items show; nothing for all items and for favourites.
    std::optional<Uuid> shown() const;
    bool showsFavorites() const;

    /// Shows the items of a line. While collecting: changes whether the line holds the item. The
    /// last line makes a collection.
    Q_INVOKABLE void choose(const QString &id);
    Q_INVOKABLE void showAll();
    Q_INVOKABLE void collect(const QString &itemID);
    Q_INVOKABLE void stopCollecting();
    /// Puts an item into it; it stays where it is in already.
    Q_INVOKABLE void add(const QString &id, const QString &itemID);

    Q_INVOKABLE void startNaming(const QString &id);
    /// Ends the naming. A new collection takes in the item that is being collected.
    Q_INVOKABLE void finishNaming(const QString &name);
    Q_INVOKABLE void stopNaming();

Q_SIGNALS:
    void changed();
    /// Other items are to show.
    void shownChanged();

private:
    void update();
    void toggle(const QString &id, const ClipItem &item);

    ClipboardStore &m_store;
    RecordListModel<ClipCollectionRow> m_rows;
    QString m_shown;
    QString m_named; ///< the line whose name is being written
    std::optional<Uuid> m_collected;
};

} // namespace velmo
