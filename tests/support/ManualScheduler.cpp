#include "tests/support/ManualScheduler.h"

#include <algorithm>
#include <cmath>

namespace velmo {

namespace {

/// Whole nanoseconds, so that 0.1 s and 0.2 s make 0.3 s.
Seconds rounded(Seconds time)
{
    return Seconds{std::round(time.count() * 1e9) / 1e9};
}

} // namespace

ManualScheduler::ManualScheduler(Date start)
    : m_start(start), m_queue(std::make_shared<TimerQueue>([] {})),
      m_dates(std::make_shared<TimerQueue>([] {}))
{
}

Date ManualScheduler::now() const
{
    return m_start + m_elapsed;
}

ScheduledTask ManualScheduler::after(Seconds delay, std::function<void()> body)
{
    const Seconds deadline = rounded(m_elapsed + std::max(Seconds{0}, delay));
    return {m_queue, m_queue->insert(deadline, std::move(body))};
}

ScheduledTask ManualScheduler::at(Date date, std::function<void()> body)
{
    return {m_dates, m_dates->insert(rounded(date.time_since_epoch()), std::move(body))};
}

void ManualScheduler::post(std::function<void()> body)
{
    const std::lock_guard lock(m_mutex);
    m_posted.push_back(std::move(body));
}

void ManualScheduler::advance(Seconds by)
{
    const Seconds target = rounded(m_elapsed + by);
    runPosted();
    for (auto next = earliest(); next && *next <= target; next = earliest()) {
        m_elapsed = std::max(m_elapsed, *next);
        if (!m_queue->runNext(m_elapsed))
            m_dates->runNext(rounded(now().time_since_epoch()));
        runPosted();
    }
    m_elapsed = target;
}

void ManualScheduler::setClock(Date date)
{
    m_start = date - m_elapsed;
    advance(0s);
}

void ManualScheduler::runPosted()
{
    while (const auto body = takePosted())
        body();
}

void ManualScheduler::runNextPosted()
{
    if (const auto body = takePosted())
        body();
}

std::size_t ManualScheduler::pendingCount() const
{
    return m_queue->size() + m_dates->size();
}

/// By the time that has elapsed.
std::optional<Seconds> ManualScheduler::earliest() const
{
    auto earliest = m_queue->earliest();
    if (const auto date = m_dates->earliest()) {
        const Seconds due = rounded(Date(*date) - m_start);
        earliest = std::min(due, earliest.value_or(due));
    }
    return earliest;
}

std::function<void()> ManualScheduler::takePosted()
{
    const std::lock_guard lock(m_mutex);
    if (m_posted.empty())
        return {};
    auto body = std::move(m_posted.front());
    m_posted.pop_front();
    return body;
}

} // namespace velmo
