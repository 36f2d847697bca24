#include "VelmoUI/Modules/Frame/UndoStack.h"

#include <utility>

namespace velmo {

void UndoStack::offer(const QString &title, std::function<void()> undo,
                      std::function<void()> commit)
{
    m_removals.push_back({title, std::move(undo), std::move(commit),
                          m_scheduler.after(time, [this] { commitFirst(); })});
    Q_EMIT changed();
}

void UndoStack::undo()
{
    if (isEmpty())
        return;
    const auto undo = std::move(m_removals.back().undo);
    m_removals.pop_back();
    undo();
    Q_EMIT changed();
}

void UndoStack::commitAll()
{
    while (!isEmpty())
        commitFirst();
}

void UndoStack::clear()
{
    m_removals.clear();
    Q_EMIT changed();
}

void UndoStack::commitFirst()
{
    const auto commit = std::move(m_removals.front().commit);
    m_removals.pop_front();
    commit();
    Q_EMIT changed();
}

} // namespace velmo
