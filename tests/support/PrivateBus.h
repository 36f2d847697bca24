#pragma once

#include "tests/support/TemporaryFolder.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusPendingCallWatcher>
#include <QProcess>
#include <QUuid>

#include <csignal>
#include <stdexcept>
#include <sys/prctl.h>

namespace velmo {

/// A message bus of the test's own. It starts only services that `serviceFolder` describes.
class PrivateBus {
public:
    explicit PrivateBus(const QString &serviceFolder = u"/nonexistent"_qs)
    {
        m_folder.write("bus.conf", R"(<busconfig>
            <type>session</type>
            <servicedir>)" + serviceFolder.toUtf8() +
                                       R"(</servicedir>
            <listen>unix:tmpdir=/tmp</listen>
            <policy context="default">
                <allow send_destination="*" eavesdrop="true"/>
                <allow eavesdrop="true"/>
                <allow own="*"/>
            </policy>
            </busconfig>)");
        // A test that is killed leaves no bus behind.
        m_daemon.setChildProcessModifier([] { ::prctl(PR_SET_PDEATHSIG, SIGTERM); });
        m_daemon.start("dbus-daemon", {"--config-file=" + m_folder.path("bus.conf"), "--nofork",
                                       "--nopidfile", "--print-address"});
        if (!m_daemon.waitForReadyRead())
            throw std::runtime_error("dbus-daemon doesn't start");
        m_address = QString::fromUtf8(m_daemon.readLine()).trimmed();
    }
    ~PrivateBus()
    {
        m_daemon.kill();
        m_daemon.waitForFinished();
    }

    /// While it is stopped it takes connections and answers none.
    void stop() { ::kill(pid_t(m_daemon.processId()), SIGSTOP); }
    void resume() { ::kill(pid_t(m_daemon.processId()), SIGCONT); }

    const QString &address() const { return m_address; }

    /// A peer of its own, whoever else in this process is on the bus.
    QDBusConnection connect() const
    {
        return QDBusConnection::connectToBus(m_address, QUuid::createUuid().toString());
    }

    /// Every call ends, by its time-out at the latest.
    static QDBusMessage answer(const QDBusPendingCall &call)
    {
        const QDBusPendingCallWatcher watcher(call); // wakes the loop
        while (!watcher.isFinished())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        return call.reply();
    }

private:
    TemporaryFolder m_folder;
    QProcess m_daemon;
    QString m_address;
};

} // namespace velmo
