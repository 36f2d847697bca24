#include "tests/e2e/Watcher.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QFile>
#include <QUuid>

#include <utility>

namespace velmo {

namespace {

using Clock = std::chrono::steady_clock;

constexpr Watcher::Time pause{20};
/// Of what the machine takes for itself.
constexpr Watcher::Time busy{50};
/// Of the processors' time that is left over: with less, the display server waits too.
constexpr double spare = 0.1;
/// Longer than any of Orvane's waits.
constexpr int patience = 30'000;

Watcher::Time since(Clock::time_point start)
{
    return std::chrono::duration_cast<Watcher::Time>(Clock::now() - start);
}

/// What the processors have done since the machine's start.
struct Load {
    double idle = 0;
    double all = 0;

    static Load now()
    {
        Load load;
        QFile file(QStringLiteral("/proc/stat"));
        if (!file.open(QIODevice::ReadOnly))
            return load;
        const QList<QByteArray> times = file.readLine().simplified().split(' ');
        for (qsizetype i = 1; i < times.size(); ++i) {
            load.all += times[i].toDouble();
            if (i == 4 || i == 5) // idle, and idle but for a disk
                load.idle += times[i].toDouble();
        }
        return load;
    }
};

QDBusMessage question(const char *service, const char *path, const char *interface,
                      const char *method)
{
    auto message = QDBusMessage::createMethodCall(QLatin1String(service), QLatin1String(path),
                                                  QLatin1String(interface), QLatin1String(method));
    message.setAutoStartService(false);
    return message;
}

} // namespace

Watcher::Watcher(const QString &bus, qint64 process)
    : m_process(process), m_thread([this, bus](const std::stop_token &stop) { watch(stop, bus); })
{
}

Watcher::~Watcher() = default;

std::vector<QString> Watcher::takeLate()
{
    const std::lock_guard last(m_asking);
    return std::exchange(m_late, {});
}

void Watcher::watch(const std::stop_token &stop, const QString &bus)
{
    auto connection = QDBusConnection::connectToBus(bus, QUuid::createUuid().toString());
    const auto status =
        question("app.orvane.Orvane", "/app/orvane/Orvane", "app.orvane.Orvane.Control", "Status");
    const auto control =
        question("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "GetId");
    while (!stop.stop_requested()) {
        const auto rested = Clock::now();
        std::this_thread::sleep_for(pause);
        const Time lateness = since(rested) - pause;
        const std::lock_guard asking(m_asking);
        const Time withoutCpuBefore = withoutCpu();
        const Load before = Load::now();
        const auto asked = Clock::now();
        const auto answer = connection.call(status, QDBus::Block, patience);
        const Time taken = since(asked);
        const bool hasGone =
            answer.type() != QDBusMessage::ReplyMessage && taken.count() < patience;
        if (taken <= limit || hasGone)
            continue;
        const auto askedBus = Clock::now();
        connection.call(control, QDBus::Block, patience);
        const Time machine = lateness + (withoutCpu() - withoutCpuBefore) + since(askedBus);
        const Load after = Load::now();
        const bool isFull = after.idle - before.idle < spare * (after.all - before.all);
        const Time allowed = machine > busy || isFull ? limitOfBusyMachine : limit;
        if (taken > allowed)
            m_late.push_back(QStringLiteral("%1 ms instead of %2; the machine kept it for %3 ms")
                                 .arg(taken.count())
                                 .arg(allowed.count())
                                 .arg(machine.count()));
    }
    QDBusConnection::disconnectFromBus(connection.name());
}

Watcher::Time Watcher::withoutCpu() const
{
    QFile file(QStringLiteral("/proc/%1/schedstat").arg(m_process));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    const std::chrono::nanoseconds waited(file.readAll().split(' ').value(1).toLongLong());
    return std::chrono::duration_cast<Time>(waited);
}

} // namespace velmo
