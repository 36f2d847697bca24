#include "VelmoCore/Jobs/JobProgress.h"

#include <algorithm>

namespace velmo {

namespace {

constexpr Seconds shortestInterval = 0.1s;

} // namespace

JobProgress::JobProgress(const Scheduler &scheduler, Send send)
    : m_scheduler(scheduler), m_send(std::move(send))
{
}

void JobProgress::update(std::optional<double> progress, const std::optional<QString> &detail,
                         bool force)
{
    {
        const std::lock_guard guard(m_lock);
        const Seconds now = m_scheduler.elapsed();
        if (!force && m_lastSent && now - *m_lastSent <= shortestInterval)
            return;
        m_lastSent = now;
    }
    if (progress)
        progress = std::clamp(*progress, 0.0, 1.0);
    m_send(progress, detail);
}

} // namespace velmo
