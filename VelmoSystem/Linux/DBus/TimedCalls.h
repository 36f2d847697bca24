#pragma once

#include "VelmoCore/Foundation/Scheduler.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>

#include <functional>
#include <map>

namespace velmo {

/// Calls of methods on a bus that are answered within a time, by an error of type
/// `QDBusError::Timeout` where the peer is silent.
class TimedCalls : public QObject {
    Q_OBJECT

public:
    using Answered = std::function<void(const QDBusMessage &)>;

    TimedCalls(QDBusConnection bus, Scheduler &scheduler);

    /// Answers once and later, but not after `forget` or after this object.
    void call(const QDBusMessage &message, Answered answered);
    /// Nothing that was asked is answered any more.
    void forget() { m_waiting.clear(); }

    static bool isTimeout(const QDBusMessage &answer);

private:
    struct Waiting {
        Answered answered;
        ScheduledTask limit;
    };

    void answer(int call, const QDBusMessage &message);

    QDBusConnection m_bus;
    Scheduler &m_scheduler;
    std::map<int, Waiting> m_waiting;
    int m_count = 0;
};

} // namespace velmo
