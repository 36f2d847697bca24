#pragma once

#include "VelmoUI/Design/LazyListModel.h"
#include "VelmoUI/Modules/Frame/PanelPort.h"
#include "VelmoUI/Modules/Frame/TilePage.h"
#include "VelmoUI/Modules/Frame/TileSelection.h"
#include "VelmoUI/Modules/Shelf/ShelfRow.h"
#include "VelmoUI/Modules/Shelf/ShelfServices.h"

namespace velmo {

/// The Shelf page of one panel. What is removed also goes when the page can't be seen any more.
class ShelfPageModel : public velmo::TilePage {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by its module")
    /// Why there is nothing to see.
    Q_PROPERTY(QString emptyTitle READ emptyTitle NOTIFY changed)
    /// "Tudo", then the groups; empty without groups.
    Q_PROPERTY(QStringList groups READ groups NOTIFY changed)
    Q_PROPERTY(int groupIndex READ groupIndex WRITE setGroupIndex NOTIFY changed)
    /// The id of the item whose name is being changed; empty for none.
    Q_PROPERTY(QString renaming READ renaming NOTIFY changed)
    /// How much of that item's name a new one replaces: all but a file's extension.
    Q_PROPERTY(int renamingLength READ renamingLength NOTIFY changed)
    /// Whether the selection's group is being chosen, and its name so far.
    Q_PROPERTY(bool isGrouping READ isGrouping NOTIFY changed)
    Q_PROPERTY(QString selectedGroup READ selectedGroup NOTIFY changed)

public:
    /// `panel` outlives the page.
    ShelfPageModel(const ShelfServices &services, PanelPort &panel);
    ~ShelfPageModel() override;

    QAbstractItemModel *items() override { return &m_rows; }
    bool isEmpty() const override;
    bool hasFound() const override { return !shown().empty(); }
    int currentIndex() const override { return m_selection.currentIndex(); }
    bool hasSelection() const override { return !m_selection.isEmpty(); }
    QString emptyTitle() const;
    QStringList groups() const;
    int groupIndex() const;
    void setGroupIndex(int index);
    QString renaming() const { return m_renaming ? uuidText(*m_renaming) : QString(); }
    int renamingLength() const;
    bool isGrouping() const { return m_isGrouping; }
    QString selectedGroup() const;

    void search(const QString &text) override;
    void press(int index, int modifiers) override;
    /// The end of a press that became no drag.
    Q_INVOKABLE void release(int index, int modifiers);
    bool handleKey(int key, int modifiers) override;
    void run(const QString &command) override;
    void drag(QQuickItem *tile) override;
    /// What there is to say of an item in a word or two; looks at its file.
    Q_INVOKABLE QString detail(const QString &id) const;

    Q_INVOKABLE void open();
    Q_INVOKABLE void openSettings();
    Q_INVOKABLE void rename(const QString &name);
    Q_INVOKABLE void stopRenaming();
    /// An empty name takes the selection out of its groups.
    Q_INVOKABLE void group(const QString &name);
    Q_INVOKABLE void stopGrouping();

private:
    void watch(bool isWatched) override;
    /// What is selected, or how many items there are.
    QString state() const override;
    void dragged();
    void lookAgain(Seconds delay);
    ShelfStore &shelf() const { return m_services.shelf; }
    const std::vector<ShelfItem> &shown() const { return m_rows.records(); }
    void update();
    void updateCommands();
    /// The selection has changed.
    void reselect();
    void ask(bool forGroup);
    void perform(const QString &action);
    void remove();
    void togglePin();
    std::vector<ShelfItem> selected() const;
    std::vector<DroppedItem> dropped() const;

    const ShelfServices m_services;
    PanelPort &m_panel;
    QString m_query;
    std::optional<QString> m_group;
    TileSelection m_selection;
    LazyListModel<ShelfItem, ShelfRow> m_rows{[this](const ShelfItem &item) {
        return ShelfRows::make(item, m_selection.contains(item.id));
    }};
    std::optional<Uuid> m_renaming;
    bool m_isGrouping = false;
    ShelfStore::IDs m_removed; ///< hidden until they are gone or back
    ScheduledTask m_lookAgain;
};

} // namespace velmo
