#include "VelmoSystem/Linux/DBus/DBusNotifications.h"

#include "tests/support/DBusMock.h"
#include "tests/support/Printers.h"
#include "tests/support/XServer.h"

#include <gtest/gtest.h>

namespace velmo {
namespace {

/// A real notification daemon on a screen of its own.
class DBusNotificationsTest : public testing::Test {
protected:
    DBusNotificationsTest()
    {
        QObject::connect(&notifications, &NotificationServer::activated, &notifications,
                         [this](const QString &identifier) { heard << "activated " + identifier; });
        QObject::connect(&notifications, &NotificationServer::closed, &notifications,
                         [this](const QString &identifier) { heard << "closed " + identifier; });
        QObject::connect(&notifications, &NotificationServer::failed, &notifications,
                         [this] { heard << "failed"; });
    }
    ~DBusNotificationsTest() override { QDBusConnection::disconnectFromBus(connection.name()); }

    static QProcessEnvironment onBus(const PrivateBus &bus)
    {
        auto values = QProcessEnvironment::systemEnvironment();
        values.insert("DBUS_SESSION_BUS_ADDRESS", bus.address());
        return values;
    }
    void startDaemon()
    {
        QDBusServiceWatcher watcher("org.freedesktop.Notifications", connection,
                                    QDBusServiceWatcher::WatchForRegistration);
        bool isReady = false;
        QObject::connect(&watcher, &QDBusServiceWatcher::serviceRegistered, &watcher,
                         [&] { isReady = true; });
        daemon = &screen.run("dunst", {"-conf", "/dev/null"});
        ASSERT_TRUE(DBusMock::waitFor([&] { return isReady; }));
    }
    QString control(const QStringList &words)
    {
        QProcess process;
        process.setProcessEnvironment(onBus(bus));
        process.start("dunstctl", words);
        DBusMock::waitFor([&] { return process.state() == QProcess::NotRunning; });
        return QString::fromUtf8(process.readAllStandardOutput()).trimmed();
    }
    bool shows(const char *count)
    {
        return eventually([&] { return control({"count", "displayed"}) == QLatin1String(count); });
    }

    PrivateBus bus;
    QDBusConnection connection = bus.connect();
    XServer screen{"800x600x24", onBus(bus)};
    QProcess *daemon = nullptr;
    DBusNotifications notifications{connection};
    QStringList heard;
};

} // namespace

TEST_F(DBusNotificationsTest, ShowsReplacesWithdrawsAndHearsOfClicks)
{
    startDaemon();
    notifications.show("um", {"Título", "5 < 6 & <b>7</b>"});
    notifications.show("um", {"Outro", "5 < 6 & <b>7</b>"});
    notifications.show("dois", {"Dois", {}});
    EXPECT_TRUE(shows("2"));
    notifications.withdraw("dois");
    EXPECT_TRUE(shows("1"));
    control({"action"});
    EXPECT_TRUE(DBusMock::waitFor([&] { return !heard.isEmpty(); }));
    control({"close-all"});
    EXPECT_TRUE(DBusMock::waitFor([&] { return heard.size() > 1; }));
    EXPECT_EQ(heard, (QStringList{"activated um", "closed um"}));
    const QString history = control({"history"});
    EXPECT_TRUE(history.contains("Outro"));
    EXPECT_TRUE(history.contains("5 &lt; 6 &amp; &lt;b&gt;7&lt;/b&gt;") ||
                history.contains("5 < 6 & <b>7</b>"));
}

TEST_F(DBusNotificationsTest, WaitsForNobody)
{
    notifications.show("um", {"Sem servidor", {}});
    EXPECT_TRUE(DBusMock::waitFor([&] { return heard == QStringList{"failed", "closed um"}; }));

    startDaemon();
    ::kill(pid_t(daemon->processId()), SIGSTOP);
    notifications.show("um", {"Parado", {}});
    notifications.show("dois", {"Desfeito", {}});
    notifications.withdraw("dois");
    ::kill(pid_t(daemon->processId()), SIGCONT);
    EXPECT_TRUE(shows("1"));

    daemon->kill();
    EXPECT_TRUE(DBusMock::waitFor([&] { return heard.count("closed um") == 2; }));
}

} // namespace velmo
