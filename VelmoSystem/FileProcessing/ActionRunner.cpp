#include "VelmoSystem/FileProcessing/ActionRunner.h"

#include "VelmoCore/Foundation/LocalizedError.h"

namespace velmo {

std::optional<ActionOutcome>
ActionRunner::run(const QString &id, const std::vector<DroppedItem> &items, const QString &source)
{
    NotchAction *action = m_actions.find(id);
    if (!action || items.empty() || !action->isAvailable(items))
        return std::nullopt;
    try {
        const ActionOutcome outcome = action->perform(items);
        m_shelf.lookForMissingFiles(); // it may have taken a file away
        return outcome;
    } catch (const LocalizedError &error) {
        m_activity.postFailure(QStringLiteral("%1: falhou").arg(action->title()), source,
                               error.description());
        throw;
    }
}

} // namespace velmo
