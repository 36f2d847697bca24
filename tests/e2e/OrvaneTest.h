#pragma once

#include "tests/e2e/Watcher.h"
#include "tests/support/Printers.h"
#include "tests/support/PrivateBus.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/XServer.h"

#include <QDBusConnection>
#include <QJsonObject>
#include <QPoint>

#include <gtest/gtest.h>

namespace velmo {

using namespace std::chrono_literals;

/// The built Orvane on a screen, on a session bus and in a home of the test's own. What it is to
/// be started with is set up first. A test fails if Orvane doesn't end well with it, or if its main
/// loop stood still.
class OrvaneTest : public testing::Test {
protected:
    struct Result {
        int exitCode = -1; ///< negative for a process that didn't end by itself
        QString output;
        QString errors;
    };

    static constexpr QRect wholeScreen{0, 0, 1512, 982};
    /// In the collapsed panel of a single screen.
    static constexpr QPoint notch{756, 5};
    static constexpr std::uint32_t green = 0x00ff00;

    OrvaneTest();
    void TearDown() override;

    /// Settings that aren't the defaults. The first steps are done unless they say otherwise.
    void writeSettings(QJsonObject settings = {}) const;
    /// Starts Orvane; `launch` also waits until it serves, and watches it from then on.
    void start(const QStringList &arguments = {});
    void launch(const QStringList &arguments = {});
    /// Runs one more process of Orvane to its end.
    Result run(const QStringList &arguments) const;
    /// Waits for the started Orvane's end; negative if it doesn't end well.
    int exitCode();
    bool isRunning() const { return orvane.state() == QProcess::Running; }
    /// All that Orvane wrote.
    QString log();
    bool logs(const QString &text);
    /// What the watcher found since the last time.
    std::vector<QString> takeLate()
    {
        return m_watcher ? m_watcher->takeLate() : std::vector<QString>();
    }

    /// Empty while Orvane doesn't answer.
    QJsonObject status() const;
    /// Of the display with that name, else of the first.
    QJsonObject display(const QString &name = {}) const;
    QString presentation(const QString &display = {}) const;
    QRect frame(const QString &key, const QString &display = {}) const;
    /// Whether a panel comes to show that, or shows nothing else for a while.
    testing::AssertionResult shows(const QString &presentation, const QString &display = {}) const;
    testing::AssertionResult keeps(const QString &presentation,
                                   std::chrono::milliseconds duration) const;
    testing::AssertionResult becomesVisible(bool visible) const;

    void pressHotKey();
    /// Of the letters, numbers and signs of a US keyboard.
    void type(const QString &text);
    /// A green window of another application, which has the keyboard when this returns.
    xcb_window_t makeGreenWindow(const QRect &frame = wholeScreen);
    void activate(xcb_window_t window);
    std::uint32_t pixel(const QPoint &point) const;
    /// Keeps the event loop going; for what is a matter of time to the user.
    static void pause(std::chrono::milliseconds duration);

    TemporaryFolder home;
    PrivateBus bus;
    QProcessEnvironment environment; ///< Orvane's
    XServer screen;
    QProcess orvane;

private:
    void endWatch();
    QProcessEnvironment makeEnvironment();
    void prepare(QProcess &process) const;

    QDBusConnection m_connection;
    QString m_log;
    std::optional<Watcher> m_watcher;
    bool m_hasStarted = false;
};

/// The same under each of the window managers.
class ManagedTest : public OrvaneTest, public testing::WithParamInterface<const char *> {
public:
    static std::string managerName(const testing::TestParamInfo<const char *> &test)
    {
        return test.param;
    }

protected:
    QProcess &manager = screen.runWindowManager(QString::fromLatin1(GetParam()));
};

/// A suite's tests run under each window manager.
#define ORVANE_UNDER_EACH_MANAGER(Suite)                                                           \
    INSTANTIATE_TEST_SUITE_P(Under, Suite, testing::Values("openbox", "xfwm4"),                    \
                             ManagedTest::managerName)

} // namespace velmo
