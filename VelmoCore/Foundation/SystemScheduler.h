#pragma once

#include "VelmoCore/Foundation/Scheduler.h"

#include <QObject>
#include <QSocketNotifier>

namespace velmo {

/// The scheduler of the running application: one timerfd on CLOCK_BOOTTIME, armed for the earliest
/// deadline only, so that an idle process never wakes. Lives on the main thread.
class SystemScheduler : public QObject, public Scheduler {
    Q_OBJECT

public:
    /// Throws `LocalizedError` where the kernel gives no timer.
    SystemScheduler();
    ~SystemScheduler() override;

    Date now() const override;
    ScheduledTask after(Seconds delay, std::function<void()> body) override;
    void post(std::function<void()> body) override;

private:
    void arm();
    void runDue();

    int m_timer;
    QSocketNotifier m_notifier;
    std::shared_ptr<TimerQueue> m_queue;
};

} // namespace velmo
