#include "tests/e2e/OrvaneTest.h"

#include <QCoreApplication>
#include <QDBusMessage>
#include <QJsonArray>
#include <QJsonDocument>

#include <X11/keysym.h>
#include <csignal>
#include <sys/prctl.h>

namespace velmo {

namespace {

/// Longer than any wait for something that does happen.
constexpr int longestRun = 20'000;

} // namespace

OrvaneTest::OrvaneTest()
    : environment(makeEnvironment()), screen("1512x982x24", environment),
      m_connection(bus.connect())
{
    environment.insert(QStringLiteral("DISPLAY"), QString::fromLatin1(screen.display()));
    prepare(orvane);
    orvane.setProcessChannelMode(QProcess::MergedChannels);
    writeSettings();
}

void OrvaneTest::TearDown()
{
    endWatch();
    if (isRunning())
        orvane.terminate();
    if (m_hasStarted) {
        EXPECT_EQ(exitCode(), 0);
    }
    if (HasFailure() && m_hasStarted)
        std::fputs(qPrintable(QStringLiteral("Orvane wrote:\n") + log()), stderr);
    QDBusConnection::disconnectFromBus(m_connection.name());
}

void OrvaneTest::writeSettings(QJsonObject settings) const
{
    const auto onboarding = QStringLiteral("hasCompletedOnboarding");
    if (!settings.contains(onboarding))
        settings.insert(onboarding, true);
    home.write(QStringLiteral("data/Orvane/settings.json"), QJsonDocument(settings).toJson());
}

void OrvaneTest::start(const QStringList &arguments)
{
    orvane.setProcessEnvironment(environment);
    m_hasStarted = true;
    orvane.start(QStringLiteral(ORVANE), arguments);
    if (!orvane.waitForStarted())
        qFatal("Orvane doesn't start");
}

void OrvaneTest::launch(const QStringList &arguments)
{
    start(arguments);
    ASSERT_TRUE(eventually([this] { return !status().isEmpty(); }));
    endWatch();
    m_watcher.emplace(bus.address(), orvane.processId());
}

OrvaneTest::Result OrvaneTest::run(const QStringList &arguments) const
{
    QProcess process;
    prepare(process);
    process.setProcessEnvironment(environment);
    process.start(QStringLiteral(ORVANE), arguments);
    const bool ended =
        process.waitForFinished(longestRun) && process.exitStatus() == QProcess::NormalExit;
    return {ended ? process.exitCode() : -1,
            QString::fromUtf8(process.readAllStandardOutput()).trimmed(),
            QString::fromUtf8(process.readAllStandardError()).trimmed()};
}

int OrvaneTest::exitCode()
{
    if (isRunning() && !orvane.waitForFinished(longestRun)) {
        orvane.kill();
        orvane.waitForFinished();
    }
    return orvane.exitStatus() == QProcess::NormalExit ? orvane.exitCode() : -1;
}

QString OrvaneTest::log()
{
    return m_log += QString::fromUtf8(orvane.readAll());
}

bool OrvaneTest::logs(const QString &text)
{
    return eventually([&] { return log().contains(text); });
}

QJsonObject OrvaneTest::status() const
{
    auto call = QDBusMessage::createMethodCall(
        QStringLiteral("app.orvane.Orvane"), QStringLiteral("/app/orvane/Orvane"),
        QStringLiteral("app.orvane.Orvane.Control"), QStringLiteral("Status"));
    call.setAutoStartService(false);
    const QDBusMessage answer = m_connection.call(call);
    if (answer.type() != QDBusMessage::ReplyMessage)
        return {};
    return QJsonDocument::fromJson(answer.arguments().value(0).toString().toUtf8()).object();
}

QJsonObject OrvaneTest::display(const QString &name) const
{
    const QJsonArray displays = status()[QStringLiteral("displays")].toArray();
    for (const auto &display : displays)
        if (name.isEmpty() || display[QStringLiteral("name")].toString() == name)
            return display.toObject();
    return {};
}

QString OrvaneTest::presentation(const QString &display) const
{
    return this->display(display)[QStringLiteral("presentation")].toString();
}

QRect OrvaneTest::frame(const QString &key, const QString &display) const
{
    const QJsonArray numbers = this->display(display)[key].toArray();
    return {numbers[0].toInt(), numbers[1].toInt(), numbers[2].toInt(), numbers[3].toInt()};
}

testing::AssertionResult OrvaneTest::shows(const QString &presentation,
                                           const QString &display) const
{
    if (eventually([&] { return this->presentation(display) == presentation; }))
        return testing::AssertionSuccess();
    return testing::AssertionFailure() << "It shows " << qPrintable(this->presentation(display))
                                       << ", not " << qPrintable(presentation);
}

testing::AssertionResult OrvaneTest::keeps(const QString &presentation,
                                           std::chrono::milliseconds duration) const
{
    QString other;
    const auto changes = [&] { return (other = this->presentation()) != presentation; };
    if (!eventually(changes, duration))
        return testing::AssertionSuccess();
    return testing::AssertionFailure() << "It shows " << qPrintable(other);
}

testing::AssertionResult OrvaneTest::becomesVisible(bool visible) const
{
    const auto is = [&] { return display()[QStringLiteral("visible")].toBool() == visible; };
    if (eventually(is))
        return testing::AssertionSuccess();
    return testing::AssertionFailure() << "It doesn't";
}

void OrvaneTest::pressHotKey()
{
    screen.typeKey(XK_n, {XK_Control_L, XK_Alt_L});
}

void OrvaneTest::type(const QString &text)
{
    for (const QChar letter : text) {
        const bool isShifted = letter.isUpper() || QStringView(u"_:@").contains(letter);
        screen.typeKey(letter.unicode(), isShifted ? std::vector<xcb_keysym_t>{XK_Shift_L}
                                                   : std::vector<xcb_keysym_t>());
    }
}

xcb_window_t OrvaneTest::makeGreenWindow(const QRect &frame)
{
    const xcb_window_t window = screen.makeWindow(frame);
    xcb_change_window_attributes(screen.client(), window, XCB_CW_BACK_PIXEL, &green);
    xcb_clear_area(screen.client(), false, window, 0, 0, 0, 0);
    activate(window);
    return window;
}

void OrvaneTest::activate(xcb_window_t window)
{
    // A window manager passes over a request for a window that it doesn't manage yet.
    EXPECT_TRUE(eventually([&] {
        constexpr std::uint32_t asPager = 2;
        screen.tellManager(window, "_NET_ACTIVE_WINDOW", {asPager, XCB_CURRENT_TIME, 0});
        return screen.focusedWindow() == window;
    }));
}

std::uint32_t OrvaneTest::pixel(const QPoint &point) const
{
    return screen.pixels(QRect(point, QSize(1, 1))).front();
}

void OrvaneTest::pause(std::chrono::milliseconds duration)
{
    eventually([] { return false; }, duration);
}

void OrvaneTest::endWatch()
{
    for (const QString &answer : takeLate())
        ADD_FAILURE() << "An answer took " << qPrintable(answer);
    m_watcher.reset();
}

QProcessEnvironment OrvaneTest::makeEnvironment()
{
    auto values = QProcessEnvironment::systemEnvironment();
    for (const char *name : {"WAYLAND_DISPLAY", "XAUTHORITY", "SESSION_MANAGER", "QT_QPA_PLATFORM",
                             "QT_SCALE_FACTOR", "ORVANE_SCREEN_CUTOUT"})
        values.remove(QString::fromLatin1(name));
    values.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), bus.address());
    const std::pair<const char *, const char *> folders[] = {{"HOME", "home"},
                                                             {"XDG_CONFIG_HOME", "config"},
                                                             {"XDG_DATA_HOME", "data"},
                                                             {"XDG_CACHE_HOME", "cache"},
                                                             {"XDG_STATE_HOME", "state"},
                                                             {"XDG_RUNTIME_DIR", "runtime"}};
    for (const auto &[name, folder] : folders) {
        const QString path = home.path(QString::fromLatin1(folder));
        QDir().mkpath(path);
        QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        values.insert(QString::fromLatin1(name), path);
    }
    return values;
}

void OrvaneTest::prepare(QProcess &process) const
{
    process.setChildProcessModifier([] { prctl(PR_SET_PDEATHSIG, SIGKILL); });
}

} // namespace velmo
