#include "VelmoSystem/Linux/Desktop/CanberraPlayer.h"

#include "tests/support/Printers.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/XServer.h"

#include <QElapsedTimer>
#include <QFile>
#include <QProcess>

#include <gtest/gtest.h>

#include <csignal>

namespace velmo {
namespace {

QStringList warnings;

/// What is logged while both sounds play.
QStringList play()
{
    warnings.clear();
    const auto previous = qInstallMessageHandler(
        [](QtMsgType, const QMessageLogContext &, const QString &text) { warnings << text; });
    {
        CanberraPlayer player;
        player.play(SystemSound::tink);
        player.play(SystemSound::glass);
    }
    qInstallMessageHandler(previous);
    return warnings;
}

} // namespace

TEST(CanberraPlayer, PlaysOnASoundServerAndSaysWhereThereIsNone)
{
    const TemporaryFolder folder;
    const QString socket = folder.path("pulse");
    qputenv("CANBERRA_DRIVER", "pulse");
    qputenv("PULSE_SERVER", "unix:" + socket.toUtf8());
    EXPECT_EQ(play().size(), 2);

    QProcess server;
    auto environment = QProcessEnvironment::systemEnvironment();
    environment.insert("HOME", folder.path("."));
    environment.insert("PULSE_RUNTIME_PATH", folder.path("run"));
    server.setProcessEnvironment(environment);
    server.start("pulseaudio",
                 {"-n", "--daemonize=no", "--exit-idle-time=-1", "--load=module-null-sink",
                  "--load=module-native-protocol-unix auth-anonymous=1 socket=" + socket});
    EXPECT_TRUE(eventually([] { return play().isEmpty(); })) << warnings.join(u'\n').toStdString();

    ::kill(pid_t(server.processId()), SIGSTOP);
    QElapsedTimer time;
    time.start();
    play();
    EXPECT_LT(time.elapsed(), 5'000);
    server.kill();
    server.waitForFinished();
}

} // namespace velmo
