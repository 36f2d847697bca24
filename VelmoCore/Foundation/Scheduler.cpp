#include "VelmoCore/Foundation/Scheduler.h"

#include "VelmoCore/Foundation/TimerQueue.h"

namespace velmo {

ScheduledTask::ScheduledTask(std::weak_ptr<TimerQueue> queue, std::uint64_t id)
    : m_queue(std::move(queue)), m_id(id)
{
}

ScheduledTask::ScheduledTask(ScheduledTask &&other) noexcept
    : m_queue(std::move(other.m_queue)), m_id(std::exchange(other.m_id, 0))
{
}

ScheduledTask &ScheduledTask::operator=(ScheduledTask &&other) noexcept
{
    // The earlier task goes last: what its body holds may look at this handle as it is destroyed.
    ScheduledTask taken(std::move(other));
    std::swap(m_queue, taken.m_queue);
    std::swap(m_id, taken.m_id);
    return *this;
}

ScheduledTask::~ScheduledTask()
{
    cancel();
}

void ScheduledTask::cancel()
{
    if (const auto queue = std::exchange(m_queue, {}).lock())
        queue->remove(std::exchange(m_id, 0));
}

bool ScheduledTask::isPending() const
{
    const auto queue = m_queue.lock();
    return queue && queue->contains(m_id);
}

} // namespace velmo
