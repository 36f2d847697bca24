#pragma once

#include "VelmoCore/Foundation/Scheduler.h"
#include "VelmoCore/Foundation/TimerQueue.h"

#include <deque>
#include <mutex>
#include <optional>

namespace velmo {

/// A scheduler whose time stands until a test moves it.
class ManualScheduler : public Scheduler {
public:
    explicit ManualScheduler(Date start = Date{1'773'480'413s});

    Date now() const override;
    Seconds elapsed() const override { return m_elapsed; }
    ScheduledTask after(Seconds delay, std::function<void()> body) override;
    ScheduledTask at(Date date, std::function<void()> body) override;
    void post(std::function<void()> body) override;

    /// Moves time, running each body at its own moment, and what was posted.
    void advance(Seconds by);
    /// Sets the wall clock, without the passing of time, and runs what is due by it.
    void setClock(Date date);
    /// Runs what was posted, without moving time.
    void runPosted();
    /// One of it, if there is any.
    void runNextPosted();
    /// How many bodies wait for their time.
    std::size_t pendingCount() const;

private:
    std::optional<Seconds> earliest() const;
    std::function<void()> takePosted();

    Date m_start; ///< what the wall clock showed when no time had elapsed
    Seconds m_elapsed{0};
    std::shared_ptr<TimerQueue> m_queue;
    std::shared_ptr<TimerQueue> m_dates;
    std::mutex m_mutex; ///< guards `m_posted`
    std::deque<std::function<void()>> m_posted;
};

} // namespace velmo
