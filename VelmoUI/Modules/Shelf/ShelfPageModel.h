#pragma once

#include "VelmoUI/App/AppServices.h"
#include "VelmoUI/Design/RecordListModel.h"
#include "VelmoUI/Modules/NotchModule.h"
#include "VelmoUI/Modules/PageCommand.h"
#include "VelmoUI/Modules/Shelf/ShelfRow.h"
#include "VelmoUI/Modules/TileSelection.h"

#include <QQuickItem>
#include <QtQml/qqmlregistration.h>

namespace velmo {

/// The Shelf page of one panel. What is removed only leaves the page at first, so that it can come
/// back; it leaves the shelf after `undoTime`, or when the page can't be seen any more.
class ShelfPageModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by its module")
    Q_PROPERTY(QAbstractItemModel *items READ items CONSTANT)
    /// Whether the shelf holds nothing, and whether it holds nothing of what is searched for.
    Q_PROPERTY(bool isEmpty READ isEmpty NOTIFY changed)
    /// Why there is nothing to see.
    Q_PROPERTY(QString emptyTitle READ emptyTitle NOTIFY changed)
    Q_PROPERTY(bool hasFound READ hasFound NOTIFY changed)
    /// "Tudo", then the groups; empty without groups.
    Q_PROPERTY(QStringList groups READ groups NOTIFY changed)
    Q_PROPERTY(int groupIndex READ groupIndex WRITE setGroupIndex NOTIFY changed)
    /// The place of the item that has the keyboard.
    Q_PROPERTY(int currentIndex READ currentIndex NOTIFY changed)
    Q_PROPERTY(bool hasSelection READ hasSelection NOTIFY changed)
    /// What has just happened, else what is selected or how many items there are.
    Q_PROPERTY(QString summary READ summary NOTIFY changed)
    Q_PROPERTY(bool canUndo READ canUndo NOTIFY changed)
    Q_PROPERTY(QAbstractItemModel *commands READ commands CONSTANT)
    /// The id of the item whose name is being changed; empty for none.
    Q_PROPERTY(QString renaming READ renaming NOTIFY changed)
    /// How much of that item's name a new one replaces: all but a file's extension.
    Q_PROPERTY(int renamingLength READ renamingLength NOTIFY changed)
    /// Whether the selection's group is being chosen, and its name so far.
    Q_PROPERTY(bool isGrouping READ isGrouping NOTIFY changed)
    Q_PROPERTY(QString selectedGroup READ selectedGroup NOTIFY changed)

public:
    static constexpr Seconds undoTime = 8s;

    explicit ShelfPageModel(const ModuleContext &context);
    ~ShelfPageModel() override;

    QAbstractItemModel *items() { return &m_rows; }
    bool isEmpty() const;
    QString emptyTitle() const;
    bool hasFound() const { return !m_shown.empty(); }
    QStringList groups() const;
    int groupIndex() const;
    void setGroupIndex(int index);
    int currentIndex() const { return m_selection.currentIndex(); }
    bool hasSelection() const { return !m_selection.isEmpty(); }
    QString summary() const;
    bool canUndo() const { return !m_removed.empty(); }
    QAbstractItemModel *commands() { return &m_commands; }
    QString renaming() const { return m_renaming ? uuidText(*m_renaming) : QString(); }
    int renamingLength() const;
    bool isGrouping() const { return m_isGrouping; }
    QString selectedGroup() const;

    /// Whether the page can be seen.
    Q_INVOKABLE void setWatched(bool watched);
    Q_INVOKABLE void search(const QString &text);
    /// What there is to say of an item in a word or two; looks at its file.
    Q_INVOKABLE QString detail(int index) const;

    /// What `TileSelection` makes of it.
    Q_INVOKABLE void press(int index, int modifiers);
    Q_INVOKABLE void release(int index, int modifiers);
    Q_INVOKABLE void clearSelection();
    /// Whether the key, with these modifiers, means something on the page.
    Q_INVOKABLE bool handleKey(int key, int modifiers);

    Q_INVOKABLE void open();
    Q_INVOKABLE void openSettings();
    /// Does what one of `commands` stands for with the selection.
    Q_INVOKABLE void run(const QString &command);
    Q_INVOKABLE void rename(const QString &name);
    Q_INVOKABLE void stopRenaming();
    /// An empty name takes the selection out of its groups.
    Q_INVOKABLE void group(const QString &name);
    Q_INVOKABLE void stopGrouping();
    Q_INVOKABLE void undoRemove();
    /// Drags the selection, seen as `tile`, until it is dropped.
    Q_INVOKABLE void drag(QQuickItem *tile);

Q_SIGNALS:
    void changed();

private:
    void dragged();
    void lookAgain(Seconds delay);
    ShelfStore &shelf() const { return m_context.services.shelf; }
    void update();
    void updateCommands();
    /// The selection isn't what it was.
    void reselect();
    void ask(bool forGroup);
    void perform(NotchAction &action);
    void remove();
    void removeForGood();
    void togglePin();
    void say(const QString &notice);
    std::vector<ShelfItem> selected() const;
    std::vector<DroppedItem> dropped() const;

    const ModuleContext m_context;
    QString m_query;
    std::optional<QString> m_group;
    std::vector<ShelfItem> m_shown; ///< as `m_rows` shows them
    RecordListModel<ShelfRow> m_rows;
    RecordListModel<PageCommand> m_commands;
    TileSelection m_selection;
    std::optional<Uuid> m_renaming;
    bool m_isGrouping = false;
    QString m_notice;
    bool m_isWatched = true; ///< until the page says otherwise
    ShelfStore::IDs m_removed;
    bool m_areGoingHome = false; ///< those removed
    ScheduledTask m_removal;
    ScheduledTask m_lookAgain;
};

} // namespace velmo
