#include "VelmoSystem/Linux/DBus/TimedCalls.h"

#include <QDBusError>
#include <QDBusPendingCallWatcher>

namespace velmo {

namespace {

constexpr Seconds longestCall = 20s; // Qt gives up later

} // namespace

TimedCalls::TimedCalls(QDBusConnection bus, Scheduler &scheduler)
    : m_bus(std::move(bus)), m_scheduler(scheduler)
{
}

void TimedCalls::call(const QDBusMessage &message, Answered answered)
{
    const int call = ++m_count;
    auto limit = m_scheduler.after(longestCall, [this, call] {
        answer(call,
               QDBusMessage::createError(QDBusError::Timeout, QStringLiteral("sem resposta")));
    });
    m_waiting.emplace(call, Waiting{std::move(answered), std::move(limit)});
    auto *const watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(message), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher, call] {
        watcher->deleteLater();
        answer(call, watcher->reply());
    });
}

bool TimedCalls::isTimeout(const QDBusMessage &answer)
{
    return QDBusError(answer).type() == QDBusError::Timeout;
}

void TimedCalls::answer(int call, const QDBusMessage &message)
{
    if (const auto waiting = m_waiting.extract(call))
        waiting.mapped().answered(message);
}

} // namespace velmo
