#pragma once

#include "VelmoCore/Foundation/Date.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <utility>

namespace velmo {

class TimerQueue;

/// A body that waits for its time. Dropping or replacing the handle cancels it.
class [[nodiscard]] ScheduledTask {
public:
    ScheduledTask() = default;
    ScheduledTask(std::weak_ptr<TimerQueue> queue, std::uint64_t id);
    ScheduledTask(ScheduledTask &&other) noexcept;
    ScheduledTask &operator=(ScheduledTask &&other) noexcept;
    ~ScheduledTask();

    void cancel();
    /// True from `after` until the body starts or the task is cancelled.
    bool isPending() const;

private:
    std::weak_ptr<TimerQueue> m_queue;
    std::uint64_t m_id = 0;
};

/// Time, as the rest of the code sees it. Nothing else reads a clock or starts a timer.
class Scheduler {
public:
    virtual ~Scheduler() = default;

    /// The wall clock.
    virtual Date now() const = 0;

    /// The time since some moment in the past, sleep included. Unlike the wall clock it can't be
    /// set, so it is what spans are measured by. May be called from any thread.
    virtual Seconds elapsed() const = 0;

    /// Runs `body` once on the main thread after `delay`, which counts on through sleep. A body may
    /// replace or drop its own handle. Main thread only.
    virtual ScheduledTask after(Seconds delay, std::function<void()> body) = 0;

    /// Runs `body` once on the main thread as soon as the wall clock shows `date` or later, also
    /// when it is set meanwhile. Main thread only.
    virtual ScheduledTask at(Date date, std::function<void()> body) = 0;

    /// Runs `body` soon on the main thread. May be called from any thread.
    virtual void post(std::function<void()> body) = 0;
};

} // namespace velmo
