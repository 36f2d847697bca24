#include "tests/e2e/OrvaneTest.h"

#include <QJsonDocument>
#include <QRegularExpression>

#include <X11/keysym.h>

namespace velmo {

class CommandTest : public OrvaneTest {};

TEST_F(CommandTest, FailsWithoutARunningOrvane)
{
    home.write("a.txt", "x");
    for (const QStringList &words :
         {QStringList{"open"}, {"toggle"}, {"status"}, {"quit"}, {"drop", home.path("a.txt")}}) {
        const Result result = run(words);
        EXPECT_EQ(result.exitCode, 1) << qPrintable(words.first());
        EXPECT_EQ(result.errors, "O Orvane não está em execução");
    }
    const Result unknown = run({"dance"});
    EXPECT_EQ(unknown.exitCode, 2);
    EXPECT_TRUE(unknown.errors.contains("dance"));
}

TEST_F(CommandTest, IsCarriedOutWhenItReturns)
{
    home.write("a.txt", "x");
    launch();
    const auto succeeds = [&](const QStringList &words) { return run(words).exitCode == 0; };
    EXPECT_TRUE(succeeds({"toggle"}));
    EXPECT_EQ(presentation(), "expanded");
    EXPECT_TRUE(succeeds({"toggle"}));
    EXPECT_EQ(presentation(), "collapsed");
    EXPECT_TRUE(succeeds({"open", "activity"}));
    EXPECT_EQ(display()["module"], "activity");
    EXPECT_TRUE(succeeds({"hide"}));
    EXPECT_FALSE(display()["visible"].toBool());
    EXPECT_EQ(presentation(), "collapsed");
    EXPECT_TRUE(succeeds({"show"}));
    EXPECT_TRUE(display()["visible"].toBool());
    EXPECT_TRUE(succeeds({"drop", home.path("a.txt")}));
    EXPECT_EQ(presentation(), "dropResult");

    const Result unknown = run({"open", "balloon"});
    EXPECT_EQ(unknown.exitCode, 1);
    EXPECT_TRUE(unknown.errors.contains("balloon"));
    EXPECT_EQ(run({"drop", home.path("gone.txt")}).exitCode, 1);
    const Result printed = run({"status"});
    EXPECT_EQ(QJsonDocument::fromJson(printed.output.toUtf8()).object(), status());

    EXPECT_TRUE(succeeds({"quit"}));
    EXPECT_EQ(exitCode(), 0);
}

TEST_F(CommandTest, GoesToTheFirstOrvaneFromASecondOne)
{
    home.write("a.txt", "x");
    screen.runWindowManager();
    launch();
    const auto windows = [&] { return screen.property(screen.root(), "_NET_CLIENT_LIST").size(); };
    EXPECT_EQ(windows(), 0U);
    EXPECT_EQ(run({}).exitCode, 0);
    EXPECT_TRUE(eventually([&] { return windows() == 1; })) << "the settings show";
    const auto look = [&] {
        std::vector<std::uint32_t> pixels;
        for (int x = 300; x < 1200; x += 20) {
            for (int y = 200; y < 700; y += 20)
                pixels.push_back(pixel({x, y}));
        }
        return pixels;
    };
    EXPECT_EQ(run({"settings", "general"}).exitCode, 0);
    pause(500ms);
    const auto general = look();
    EXPECT_EQ(run({"settings", "about"}).exitCode, 0);
    EXPECT_TRUE(eventually([&] { return look() != general; }));
    EXPECT_EQ(run({}).exitCode, 0);
    EXPECT_TRUE(eventually([&] { return look() == general; })) << "its first page";
    EXPECT_EQ(run({"settings", "balloon"}).exitCode, 1);
    EXPECT_EQ(windows(), 1U);
    EXPECT_EQ(run({home.path("a.txt")}).exitCode, 0);
    EXPECT_EQ(presentation(), "dropResult");
    EXPECT_TRUE(isRunning());
}

TEST_F(CommandTest, ReachesTheSettingsFromAScript)
{
    launch();
    QProcess watch;
    watch.setProcessEnvironment(environment);
    watch.start(ORVANE, {"watch"});
    ASSERT_TRUE(watch.waitForStarted());
    int changes = 0;
    EXPECT_TRUE(eventually([&] { // from some time on it listens
        run({"settings", "set", "closeDelay", ++changes % 2 ? "0.6" : "0.8"});
        return watch.waitForReadyRead(100);
    }));
    EXPECT_EQ(run({"settings", "set", "closeDelay", "0.7"}).exitCode, 0);
    EXPECT_EQ(run({"settings", "get", "closeDelay"}).output.trimmed(), "0.7");
    EXPECT_TRUE(run({"settings", "list"}).output.contains("closeDelay\t0.7"));
    EXPECT_TRUE(run({"settings", "list", "--json"}).output.startsWith("["));
    EXPECT_EQ(run({"settings", "set", "closeDelay", "x"}).exitCode, 1);
    EXPECT_EQ(run({"settings", "set", "closeDelay"}).exitCode, 2);

    const QString file = home.path("meus ajustes.json");
    EXPECT_EQ(run({"settings", "export", file}).exitCode, 0);
    EXPECT_EQ(run({"settings", "export", file}).exitCode, 1);
    EXPECT_EQ(run({"settings", "import", file}).exitCode, 0);
    QProcess shell;
    shell.start("sh", {"-c", R"sh(exec "$0" settings get "$(printf '\377')")sh", ORVANE});
    ASSERT_TRUE(shell.waitForFinished());
    EXPECT_EQ(shell.exitCode(), 2);
    EXPECT_TRUE(shell.readAllStandardError().contains("UTF-8"));

    ::kill(pid_t(watch.processId()), SIGINT);
    ASSERT_TRUE(watch.waitForFinished());
    EXPECT_EQ(watch.exitCode(), 130);
    EXPECT_TRUE(watch.readAllStandardOutput().startsWith("settings closeDelay\n"));
}

class LaunchTest : public OrvaneTest {};

TEST_F(LaunchTest, OpensOnceForAUserWhoHasNotSeenItYet)
{
    writeSettings({{"hasCompletedOnboarding", false}});
    launch();
    EXPECT_TRUE(shows("expanded"));
}

TEST_F(LaunchTest, NeedsNoSessionBus)
{
    environment.insert("DBUS_SESSION_BUS_ADDRESS", "unix:path=" + home.path("no-bus"));
    start();
    ASSERT_TRUE(logs("Orvane iniciado"));
    screen.movePointer(notch.x(), notch.y());
    EXPECT_TRUE(logs("collapsed → expanded"));
}

TEST_F(LaunchTest, NeedsAScreen)
{
    for (const char *display : {"", ":4999"}) {
        environment.insert("DISPLAY", display);
        const Result result = run({});
        EXPECT_EQ(result.exitCode, 1);
        EXPECT_TRUE(result.errors.contains("DISPLAY")) << qPrintable(result.errors);
    }
}

TEST_F(LaunchTest, GoesOnWithoutAHotKeyThatIsTaken)
{
    for (const int lock : {0, int(XCB_MOD_MASK_LOCK), int(XCB_MOD_MASK_2)})
        xcb_grab_key(screen.client(), false, screen.root(),
                     std::uint16_t(XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1 | lock),
                     screen.keycode(XK_n), XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
    xcb_flush(screen.client());
    launch();
    EXPECT_TRUE(logs("Este atalho já está em uso"));
    screen.movePointer(notch.x(), notch.y());
    EXPECT_TRUE(shows("expanded"));
}

class ProbeTest : public OrvaneTest {
protected:
    void TearDown() override
    {
        EXPECT_FALSE(QFile::exists(home.path("state/Orvane"))) << "A self-test made a key";
        OrvaneTest::TearDown();
    }
};

TEST_F(ProbeTest, OpensThePanelForAWhile)
{
    start({"--probe-open", "0.5"});
    EXPECT_TRUE(shows("expanded"));
    EXPECT_EQ(exitCode(), 0);
}

TEST_F(ProbeTest, DropsAFile)
{
    home.write("a.txt", "x");
    start({"--probe-open", "9", "--probe-drop", home.path("a.txt")});
    EXPECT_TRUE(shows("expanded")) << "as the other flag wants it";
    EXPECT_TRUE(shows("dropResult"));
    EXPECT_EQ(exitCode(), 0);
}

TEST_F(ProbeTest, CompressesCopiesAtEachLevel)
{
    home.write("a.txt", QByteArray(100'000, 'a'));
    const QString file = home.path("a.txt");
    EXPECT_EQ(run({"--probe-compress", home.path("report.txt"), file, file}).exitCode, 0);
    const QString report = QString::fromUtf8(home.read("report.txt"));
    EXPECT_TRUE(report.startsWith("2 arquivos, ")) << qPrintable(report);
    for (int level = 1; level <= 9; ++level)
        EXPECT_TRUE(QRegularExpression(QString("nível %1: \\d{3,4} bytes\n").arg(level))
                        .match(report)
                        .hasMatch())
            << qPrintable(report);
    EXPECT_EQ(home.read("a.txt").size(), 100'000);
    EXPECT_NE(run({"--probe-compress", home.path("report.txt"), home.path("nada")}).exitCode, 0);
}

TEST_F(ProbeTest, TellsWhatTheDesktopAllows)
{
    EXPECT_EQ(run({"--probe-trust", home.path("trust.txt")}).exitCode, 0);
    const QString text = QString::fromUtf8(home.read("trust.txt"));
    EXPECT_TRUE(QRegularExpression(
                    QRegularExpression::anchoredPattern(
                        "acessibilidade=(true|false) tela=(true|false) teclado=(true|false)\n"))
                    .match(text)
                    .hasMatch())
        << qPrintable(text);
}

} // namespace velmo
