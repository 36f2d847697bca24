#include "VelmoSystem/Linux/DBus/DBusNotifications.h"

#include "tests/support/DBusMock.h"
#include "tests/support/Printers.h"
#include "tests/support/XServer.h"

#include <QDBusConnectionInterface>
#include <QDBusContext>

#include <gtest/gtest.h>

namespace velmo {
namespace {

/// A notification server that answers when the test says so.
class NotificationServerFake : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Notifications")

public:
    /// Takes the name, also from another one.
    explicit NotificationServerFake(const PrivateBus &bus) : connection(bus.connect())
    {
        connection.registerObject("/org/freedesktop/Notifications", this,
                                  QDBusConnection::ExportAllSlots |
                                      QDBusConnection::ExportAllSignals);
        connection.interface()->registerService("org.freedesktop.Notifications",
                                                QDBusConnectionInterface::ReplaceExistingService,
                                                QDBusConnectionInterface::AllowReplacement);
    }
    ~NotificationServerFake() override { QDBusConnection::disconnectFromBus(connection.name()); }

    bool hasCalls(int count)
    {
        return DBusMock::waitFor([&] { return calls.size() == count; });
    }
    void answer(int call, uint id) { connection.send(questions[call].createReply(id)); }

public Q_SLOTS:
    QStringList GetCapabilities()
    {
        if (!capabilities)
            sendErrorReply(QDBusError::NoReply);
        return capabilities.value_or(QStringList());
    }
    uint Notify(const QString &, uint replaced, const QString &, const QString &title,
                const QString &body, const QStringList &, const QVariantMap &, int)
    {
        calls << QString("%1 %2 %3").arg(replaced).arg(title, body);
        questions.append(message());
        setDelayedReply(true);
        return 0;
    }
    void CloseNotification(uint id) { calls << QString("close %1").arg(id); }

Q_SIGNALS:
    void NotificationClosed(uint id, uint reason);
    void ActionInvoked(uint id, const QString &action);

public:
    QDBusConnection connection;
    std::optional<QStringList> capabilities = QStringList{"body"};
    QStringList calls; ///< "replaced title body"
    QList<QDBusMessage> questions;
};

/// A real notification daemon on a screen of its own.
class DBusNotificationsTest : public testing::Test {
protected:
    DBusNotificationsTest()
    {
        QObject::connect(&notifications, &NotificationServer::activated, &notifications,
                         [this](const QString &identifier, const QString &action) {
                             heard << "activated " + identifier + action;
                         });
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
    EXPECT_TRUE(history.contains("\"5 < 6 & <b>7</b>\"")) << "without a file it takes no markup";
}

TEST_F(DBusNotificationsTest, EscapesForServersThatTakeMarkupAndAsksUntilItKnows)
{
    NotificationServerFake server(bus);
    server.capabilities.reset();
    notifications.show("um", {"A", "<&>"});
    ASSERT_TRUE(server.hasCalls(1));
    server.capabilities = {"body", "body-markup"};
    notifications.show("dois", {"B", "<&>"});
    ASSERT_TRUE(server.hasCalls(2));
    server.answer(0, 5);
    notifications.show("um", {"A", "nova"});
    ASSERT_TRUE(server.hasCalls(3));
    server.answer(2, 5);
    NotificationServerFake other(bus);
    EXPECT_TRUE(DBusMock::waitFor([&] { return heard.contains("closed um"); }));
    notifications.show("tres", {"C", "<&>"});
    ASSERT_TRUE(other.hasCalls(1));
    EXPECT_EQ(server.calls + other.calls,
              (QStringList{"0 A <&>", "0 B &lt;&amp;&gt;", "5 A nova", "0 C <&>"}));
}

TEST_F(DBusNotificationsTest, KeepsAReplacementWhoseEarlierOneIsClosed)
{
    NotificationServerFake server(bus);
    notifications.show("um", {"A", {}});
    ASSERT_TRUE(server.hasCalls(1));
    server.answer(0, 5);
    notifications.show("um", {"B", {}});
    ASSERT_TRUE(server.hasCalls(2));
    Q_EMIT server.NotificationClosed(5, 2);
    server.answer(1, 6);
    Q_EMIT server.ActionInvoked(6, "default");
    Q_EMIT server.ActionInvoked(6, "!");
    Q_EMIT server.NotificationClosed(6, 2);
    EXPECT_TRUE(DBusMock::waitFor([&] { return heard.contains("closed um"); }));
    EXPECT_EQ(server.calls, (QStringList{"0 A ", "5 B "}));
    EXPECT_EQ(heard, (QStringList{"activated um", "activated um!", "closed um"}));
}

TEST_F(DBusNotificationsTest, StartsAnewWithANewServer)
{
    NotificationServerFake old(bus);
    for (const char *identifier : {"um", "dois", "tres"})
        notifications.show(identifier, {identifier, {}});
    ASSERT_TRUE(old.hasCalls(3));
    old.answer(0, 5); // "dois": they are asked for by name
    notifications.show("tres", {"novo", {}});
    NotificationServerFake next(bus);
    EXPECT_TRUE(DBusMock::waitFor([&] { return heard.contains("closed dois"); }));
    old.answer(1, 6);
    old.answer(2, 7);
    ASSERT_TRUE(next.hasCalls(1));
    EXPECT_EQ(next.calls, QStringList{"0 novo "});
    next.answer(0, 5);
    Q_EMIT next.ActionInvoked(5, "default");
    EXPECT_TRUE(DBusMock::waitFor([&] { return heard.contains("activated tres"); }));
    EXPECT_EQ(heard, (QStringList{"closed dois", "closed um", "activated tres"}));
}

TEST_F(DBusNotificationsTest, SaysThatThereIsNoBus)
{
    DBusNotifications lonely{QDBusConnection("nowhere")};
    QObject::connect(&lonely, &NotificationServer::failed, [this] { heard << "failed"; });
    QObject::connect(&lonely, &NotificationServer::closed,
                     [this](const QString &identifier) { heard << identifier; });
    lonely.show("um", {"A", {}});
    EXPECT_EQ(heard, (QStringList{"failed", "um"}));
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

#include "DBusNotificationsTest.moc"
