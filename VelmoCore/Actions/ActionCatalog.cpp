#include "VelmoCore/Actions/ActionCatalog.h"

#include <algorithm>

namespace velmo {

void ActionCatalog::add(std::unique_ptr<NotchAction> action)
{
    if (find(action->id()))
        qFatal("Two actions are called %s.", qPrintable(action->id()));
    m_actions.push_back(std::move(action));
}

NotchAction *ActionCatalog::find(const QString &id) const
{
    const auto found = std::ranges::find(m_actions, id, &NotchAction::id);
    return found == m_actions.end() ? nullptr : found->get();
}

std::vector<NotchAction *> ActionCatalog::actions(const std::vector<DroppedItem> &items) const
{
    std::vector<NotchAction *> available;
    for (const auto &action : m_actions) {
        if (!items.empty() && action->isAvailable(items))
            available.push_back(action.get());
    }
    return available;
}

} // namespace velmo
