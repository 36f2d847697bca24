#pragma once

#include "VelmoCore/Actions/ActionCatalog.h"
#include "VelmoCore/Activity/ActivityCenter.h"
#include "VelmoCore/Shelf/ShelfStore.h"

namespace velmo {

/// Runs quick actions, wherever they are started. Main thread only.
class ActionRunner {
public:
    /// All of them outlive this object.
    ActionRunner(ActionCatalog &actions, ActivityCenter &activity, ShelfStore &shelf)
        : m_actions(actions), m_activity(activity), m_shelf(shelf)
    {
    }

    /// Those that can be done with the items, in order.
    std::vector<NotchAction *> available(const std::vector<DroppedItem> &items) const
    {
        return m_actions.actions(items);
    }
    /// What came of it; nothing for an action that doesn't exist or isn't available for the items.
    /// A failure is posted to the activity under `source`, and thrown as `LocalizedError`.
    std::optional<ActionOutcome> run(const QString &id, const std::vector<DroppedItem> &items,
                                     const QString &source);

private:
    ActionCatalog &m_actions;
    ActivityCenter &m_activity;
    ShelfStore &m_shelf;
};

} // namespace velmo
