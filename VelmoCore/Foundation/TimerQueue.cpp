#include "VelmoCore/Foundation/TimerQueue.h"

namespace velmo {

TimerQueue::TimerQueue(std::function<void()> deadlineChanged)
    : m_deadlineChanged(std::move(deadlineChanged))
{
}

std::uint64_t TimerQueue::insert(Seconds deadline, std::function<void()> body)
{
    const auto id = m_nextID++;
    const auto place = m_bodies.emplace(Key{deadline, id}, std::move(body)).first;
    m_deadlines.emplace(id, deadline);
    if (place == m_bodies.begin())
        m_deadlineChanged();
    return id;
}

void TimerQueue::remove(std::uint64_t id)
{
    const auto deadline = m_deadlines.extract(id);
    if (!deadline)
        return;
    const auto place = m_bodies.find({deadline.mapped(), id});
    const bool wasEarliest = place == m_bodies.begin();
    // Destroyed at the end, when the queue is whole again: the body may hold further tasks.
    const auto body = m_bodies.extract(place);
    if (wasEarliest)
        m_deadlineChanged();
}

bool TimerQueue::contains(std::uint64_t id) const
{
    return m_deadlines.contains(id);
}

std::optional<Seconds> TimerQueue::earliest() const
{
    if (m_bodies.empty())
        return std::nullopt;
    return m_bodies.begin()->first.first;
}

bool TimerQueue::runNext(Seconds time)
{
    if (m_bodies.empty() || m_bodies.begin()->first.first > time)
        return false;
    const auto next = m_bodies.extract(m_bodies.begin());
    m_deadlines.erase(next.key().second);
    // Announced before the body runs: an event loop inside the body needs the next deadline.
    m_deadlineChanged();
    next.mapped()();
    return true;
}

} // namespace velmo
