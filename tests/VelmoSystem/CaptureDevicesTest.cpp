#include "VelmoCore/Foundation/SystemScheduler.h"
#include "VelmoSystem/Linux/Device/LinuxCaptureDevices.h"

#include "tests/support/ManualScheduler.h"
#include "tests/support/Printers.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/XServer.h"

#include <QProcess>

#include <gtest/gtest.h>

#include <csignal>
#include <sys/prctl.h>

namespace velmo {
namespace {

void prepare(QProcess &process)
{
    process.setChildProcessModifier([] { ::prctl(PR_SET_PDEATHSIG, SIGKILL); });
    process.setStandardOutputFile(QProcess::nullDevice());
}

void end(QProcess &process)
{
    process.kill();
    process.waitForFinished();
}

/// A sound server of the test's own with a microphone and, as each sink has one, a monitor.
class Microphone : public testing::Test {
protected:
    Microphone() { qputenv("PULSE_SERVER", "unix:" + socket.toUtf8()); }
    ~Microphone() override { end(server); }

    void startServer()
    {
        auto environment = QProcessEnvironment::systemEnvironment();
        environment.insert("HOME", folder.path("."));
        environment.insert("PULSE_RUNTIME_PATH", folder.path("run"));
        server.setProcessEnvironment(environment);
        prepare(server);
        server.start("pulseaudio",
                     {"-n", "--daemonize=no", "--exit-idle-time=-1",
                      "--load=module-null-sink sink_name=speaker",
                      "--load=module-null-source source_name=microphone",
                      "--load=module-native-protocol-unix auth-anonymous=1 socket=" + socket});
        ASSERT_TRUE(eventually([this] { return QFile::exists(socket); }));
    }
    /// `parec` in the place of the program.
    void record(QProcess &recorder, const QString &program, const QString &device) const
    {
        prepare(recorder);
        recorder.start("parec",
                       {"--device=" + device, "--property=application.process.binary=" + program});
        ASSERT_TRUE(recorder.waitForStarted());
    }
    bool hears(const QStringList &users)
    {
        return eventually([&] {
            scheduler.advance(1s);
            return devices.microphoneUsers() == users;
        });
    }

    TemporaryFolder folder;
    QString socket = folder.path("pulse");
    QProcess server;
    ManualScheduler scheduler;
    LinuxCaptureDevices devices{scheduler};
};

TEST_F(Microphone, IsUsedByWhoRecordsFromItAndNotByWhoRecordsWhatPlays)
{
    startServer();
    devices.watchMicrophone(true);
    QProcess monitor, browser, other;
    record(monitor, "obs", "speaker.monitor");
    record(browser, "chrome", "microphone");
    EXPECT_TRUE(hears({"google-chrome"}));
    record(other, "arecord", "microphone");
    EXPECT_TRUE(hears({"arecord", "google-chrome"}));
    end(browser);
    EXPECT_TRUE(hears({"arecord"}));
    devices.watchMicrophone(false);
    EXPECT_TRUE(devices.microphoneUsers().isEmpty());
    devices.watchMicrophone(true);
    EXPECT_TRUE(hears({"arecord"}));
    EXPECT_EQ(scheduler.pendingCount(), 0U) << "it polls";
    end(monitor);
    end(other);
}

TEST_F(Microphone, IsFoundAgainWhenTheServerComesBack)
{
    devices.watchMicrophone(true);
    const auto isLost = [this] {
        scheduler.runPosted();
        return scheduler.pendingCount() == 1;
    };
    EXPECT_TRUE(eventually(isLost)) << "no server";
    startServer();
    QProcess browser;
    record(browser, "firefox", "microphone");
    EXPECT_TRUE(hears({"firefox"}));
    end(server);
    EXPECT_TRUE(hears({}));
    EXPECT_TRUE(eventually(isLost));
    devices.watchMicrophone(false);
    EXPECT_EQ(scheduler.pendingCount(), 0U);
    end(browser);
}

TEST(Camera, IsInUseWhileAnotherProcessHasItOpen)
{
    const TemporaryFolder folder;
    folder.write("video0", "");
    SystemScheduler scheduler;
    LinuxCaptureDevices devices(scheduler, folder.path("video"));
    const auto isInUse = [&] {
        std::optional<bool> answer;
        devices.isCameraInUse([&](bool isOpen) { answer = isOpen; });
        EXPECT_TRUE(eventually([&] { return answer.has_value(); }));
        return answer.value();
    };
    EXPECT_FALSE(isInUse());
    QFile own(folder.path("video0"));
    ASSERT_TRUE(own.open(QIODevice::ReadOnly));
    EXPECT_FALSE(isInUse()) << "Orvane itself";
    QProcess holder;
    prepare(holder);
    holder.setStandardInputFile(folder.path("video0"));
    holder.start("sleep", {"60"});
    ASSERT_TRUE(holder.waitForStarted());
    EXPECT_TRUE(isInUse());
    end(holder);
    EXPECT_FALSE(isInUse());
}

} // namespace
} // namespace velmo
