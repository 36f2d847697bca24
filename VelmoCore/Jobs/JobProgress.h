#pragma once

#include "VelmoCore/Foundation/Scheduler.h"

#include <QString>

#include <functional>
#include <mutex>
#include <optional>

namespace velmo {

/// How a job reports how far it is, from any thread. At most ten updates a second get through; the
/// others are dropped, so a phase ends with a forced one.
class JobProgress {
public:
    using Send = std::function<void(std::optional<double>, const std::optional<QString> &)>;

    JobProgress(const Scheduler &scheduler, Send send);

    /// `progress` is 0 to 1, absent where it isn't known.
    void update(std::optional<double> progress, const std::optional<QString> &detail = std::nullopt,
                bool force = false);

private:
    const Scheduler &m_scheduler;
    Send m_send;
    std::mutex m_lock;
    std::optional<Seconds> m_lastSent; ///< by the scheduler's elapsed time
};

} // namespace velmo
