#include "VelmoCore/Foundation/SystemScheduler.h"

#include "VelmoCore/Foundation/LocalizedError.h"
#include "VelmoCore/Foundation/TimerQueue.h"

#include <algorithm>
#include <cmath>
#include <sys/timerfd.h>
#include <unistd.h>

namespace velmo {

namespace {

int makeTimer(clockid_t clock)
{
    const int timer = timerfd_create(clock, TFD_NONBLOCK | TFD_CLOEXEC);
    if (timer < 0)
        throw LocalizedError(
            QStringLiteral("O sistema não forneceu um temporizador: %1").arg(qt_error_string()));
    return timer;
}

/// Rounded up to the next nanosecond, lest the timer fires before the deadline. All zero would
/// disarm it, and the kernel counts no further than 9.2e9 seconds.
timespec timespecFrom(Seconds deadline)
{
    const double seconds = std::clamp(deadline.count(), 1e-9, 9e9);
    const double whole = std::floor(seconds);
    const double nanoseconds = std::ceil((seconds - whole) * 1e9);
    return nanoseconds < 1e9 ? timespec{static_cast<time_t>(whole), static_cast<long>(nanoseconds)}
                             : timespec{static_cast<time_t>(whole) + 1, 0};
}

} // namespace

SystemScheduler::Clock::Clock(clockid_t id)
    : m_id(id), m_timer(makeTimer(id)), m_notifier(m_timer, QSocketNotifier::Read),
      m_queue(std::make_shared<TimerQueue>([this] { arm(); }))
{
    m_notifier.setObjectName(QStringLiteral("scheduler"));
    QObject::connect(&m_notifier, &QSocketNotifier::activated, &m_notifier, [this] { runDue(); });
}

SystemScheduler::Clock::~Clock()
{
    m_notifier.setEnabled(false);
    close(m_timer);
}

Seconds SystemScheduler::Clock::time() const
{
    timespec time{};
    clock_gettime(m_id, &time);
    return std::chrono::seconds{time.tv_sec} + std::chrono::nanoseconds{time.tv_nsec};
}

ScheduledTask SystemScheduler::Clock::insert(Seconds deadline, std::function<void()> body)
{
    return {m_queue, m_queue->insert(deadline, std::move(body))};
}

void SystemScheduler::Clock::arm()
{
    itimerspec timer{};
    if (const auto deadline = m_queue->earliest())
        timer.it_value = timespecFrom(*deadline);
    if (timerfd_settime(m_timer, TFD_TIMER_ABSTIME, &timer, nullptr) != 0)
        qFatal("timerfd_settime: %s", qPrintable(qt_error_string()));
}

void SystemScheduler::Clock::runDue()
{
    // Setting the timer again makes it unreadable until the next deadline; so a spurious call, or
    // one for a task that was cancelled just now, ends here as well.
    arm();
    // The time stands during the run, so that bodies which start again leave other events their
    // turn.
    const Seconds now = time();
    while (m_queue->runNext(now)) {
    }
}

SystemScheduler::SystemScheduler() = default;

Date SystemScheduler::now() const
{
    return std::chrono::system_clock::now();
}

Seconds SystemScheduler::elapsed() const
{
    return m_sinceBoot.time();
}

ScheduledTask SystemScheduler::after(Seconds delay, std::function<void()> body)
{
    return m_sinceBoot.insert(m_sinceBoot.time() + std::max(Seconds{0}, delay), std::move(body));
}

ScheduledTask SystemScheduler::at(Date date, std::function<void()> body)
{
    return m_wall.insert(date.time_since_epoch(), std::move(body));
}

void SystemScheduler::post(std::function<void()> body)
{
    QMetaObject::invokeMethod(this, std::move(body), Qt::QueuedConnection);
}

} // namespace velmo
