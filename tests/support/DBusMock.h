#pragma once

#include "VelmoCore/Foundation/SystemScheduler.h"

#include "tests/support/PrivateBus.h"

#include <QDBusMessage>
#include <QDBusServiceWatcher>

#include <csignal>

namespace velmo {

/// A service that python-dbusmock plays on a private bus, in a process of its own.
class DBusMock {
public:
    /// `arguments` as in `/usr/bin/python3 -m dbusmock --help`, such as {"--template", "upower"}.
    /// Comes back once the bus knows `service`.
    DBusMock(const PrivateBus &bus, const QString &service, const QStringList &arguments)
        : m_service(service), m_peer(bus.connect())
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        for (const char *variable : {"DBUS_SESSION_BUS_ADDRESS", "DBUS_SYSTEM_BUS_ADDRESS"})
            environment.insert(variable, bus.address());
        m_process.setProcessEnvironment(environment);
        m_process.setStandardOutputFile(QProcess::nullDevice()); // each call it gets
        QDBusServiceWatcher watcher(service, m_peer, QDBusServiceWatcher::WatchForRegistration);
        bool isReady = false;
        QObject::connect(&watcher, &QDBusServiceWatcher::serviceRegistered, &m_process,
                         [&] { isReady = true; });
        m_process.start("/usr/bin/python3", QStringList{"-m", "dbusmock"} + arguments);
        const auto isOver = [&] { return isReady || m_process.state() == QProcess::NotRunning; };
        if (!waitFor(isOver) || !isReady)
            throw std::runtime_error("no dbusmock: " +
                                     m_process.readAllStandardError().toStdString());
    }
    ~DBusMock()
    {
        m_process.kill();
        m_process.waitForFinished();
    }

    /// Calls a method of the mock, its own ones included. Throws what it answers as an error.
    QVariant call(const QString &path, const QString &interface, const QString &method,
                  const QVariantList &arguments = {})
    {
        auto message = QDBusMessage::createMethodCall(m_service, path, interface, method);
        message.setArguments(arguments);
        const QDBusMessage reply = m_peer.call(message);
        if (reply.type() == QDBusMessage::ErrorMessage)
            throw std::runtime_error(reply.errorMessage().toStdString());
        return reply.arguments().value(0);
    }

    /// Runs Python in the mock: `self` is its object at `path`, `objects` are all by path.
    void run(const QString &path, const QString &code)
    {
        const QString interface = "app.orvane.Test";
        call(path, "org.freedesktop.DBus.Mock", "AddMethod",
             {interface, "Run", "s", "", "exec(args[0], dict(globals(), self=self))"});
        call(path, interface, "Run", {code});
    }

    /// While it is stopped it takes calls and answers none.
    void stop() { ::kill(pid_t(m_process.processId()), SIGSTOP); }
    void resume() { ::kill(pid_t(m_process.processId()), SIGCONT); }

    /// Runs the event loop until `isDone` holds; false if it doesn't within ten seconds.
    template <class Condition>
    static bool waitFor(Condition isDone)
    {
        SystemScheduler scheduler;
        const ScheduledTask limit = scheduler.after(10s, [] {}); // wakes the loop
        while (!isDone() && limit.isPending())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        return isDone();
    }

private:
    QString m_service;
    QDBusConnection m_peer;
    QProcess m_process;
};

} // namespace velmo
