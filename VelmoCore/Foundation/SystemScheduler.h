#pragma once

#include "VelmoCore/Foundation/Scheduler.h"

#include <QObject>
#include <QSocketNotifier>

#include <time.h>

namespace velmo {

/// The scheduler of the running application: a timerfd for each of its two clocks, armed for the
/// earliest deadline only, so that an idle process never wakes. Lives on the main thread.
class SystemScheduler : public QObject, public Scheduler {
    Q_OBJECT

public:
    /// Throws `LocalizedError` where the kernel gives no timer.
    SystemScheduler();

    Date now() const override;
    Seconds elapsed() const override;
    ScheduledTask after(Seconds delay, std::function<void()> body) override;
    ScheduledTask at(Date date, std::function<void()> body) override;
    void post(std::function<void()> body) override;

private:
    class Clock {
    public:
        explicit Clock(clockid_t id);
        ~Clock();
        Q_DISABLE_COPY_MOVE(Clock)

        Seconds time() const;
        ScheduledTask insert(Seconds deadline, std::function<void()> body);

    private:
        void arm();
        void runDue();

        clockid_t m_id;
        int m_timer;
        QSocketNotifier m_notifier;
        std::shared_ptr<TimerQueue> m_queue;
    };

    Clock m_sinceBoot{CLOCK_BOOTTIME};
    Clock m_wall{CLOCK_REALTIME}; ///< the kernel looks again at its deadline when it is set
};

} // namespace velmo
