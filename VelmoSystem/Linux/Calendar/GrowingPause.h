#pragma once

#include "VelmoCore/Foundation/Scheduler.h"

#include <algorithm>
#include <optional>

namespace velmo {

/// How long to wait before something is tried again: twice as long each time, until it has gone
/// well for a while.
class GrowingPause {
public:
    explicit GrowingPause(const Scheduler &scheduler) : m_scheduler(scheduler) {}

    Seconds next()
    {
        const Seconds now = m_scheduler.elapsed();
        const bool isNew = !m_last || now - *m_last > quietTime;
        m_last = now;
        m_pause = isNew ? shortest : std::min(2 * m_pause, longest);
        return m_pause;
    }

private:
    static constexpr Seconds shortest = 3s;
    static constexpr Seconds longest = 120s;
    static constexpr Seconds quietTime = 300s; ///< more than a pause and all that it waits for

    const Scheduler &m_scheduler;
    std::optional<Seconds> m_last;
    Seconds m_pause{0};
};

} // namespace velmo
