#include "VelmoCore/Foundation/SystemScheduler.h"
#include "VelmoSystem/Linux/DBus/AccessibleWebPageButton.h"

#include "tests/e2e/RoomTest.h"

namespace velmo {

class MeetingTest : public RoomTest {};

TEST_F(MeetingTest, ShowsACallInABrowserAndPressesAButtonOfItsPage)
{
    home.write("page.html", R"(<!doctype html><meta charset=utf-8><title>Meet - abc-defg-hij</title>
        <body style="background:#000"><button>Apresentar agora</button>
        <script>
            const call = navigator.mediaDevices.getUserMedia({audio: true});
            document.querySelector('button').onclick = async () => {
                document.body.style.background = '#0f0';
                (await call).getTracks()[0].stop();
            };
        </script>)");
    screen.run("pulseaudio", {"-n", "--daemonize=no", "--exit-idle-time=-1",
                              "--load=module-null-source", "--load=module-native-protocol-unix"});
    ASSERT_TRUE(eventually([this] { return QFile::exists(home.path("runtime/pulse/native")); }));
    launch();
    screen.run("env", {"GNOME_ACCESSIBILITY=1", "chromium", "--force-renderer-accessibility",
                       "--use-fake-ui-for-media-stream", "--no-sandbox", "--disable-dev-shm-usage",
                       "--no-first-run", "--disable-gpu", "--password-store=basic",
                       "--user-data-dir=" + home.path("chromium"), "--window-size=1000,800",
                       "--window-position=200,100", "--app=file://" + home.path("page.html")});
    const auto isInCall = [this] {
        return status()["live"].toArray().contains(QJsonValue("meeting.timer"));
    };
    ASSERT_TRUE(eventually(isInCall, 40s));

    const auto active = screen.property(screen.root(), "_NET_ACTIVE_WINDOW");
    const auto pid = screen.property(active.at(0), "_NET_WM_PID");
    SystemScheduler scheduler;
    AccessibleWebPageButton button(bus.connect(), scheduler);
    std::optional<QString> name;
    button.findName({"apresentar"}, pid.at(0), [&](const auto &given) { name = given; });
    EXPECT_TRUE(eventually([&] { return name == "Apresentar agora"; }));
    std::optional<bool> isPressed;
    button.press({"apresentar agora"}, pid.at(0), [&](bool given) { isPressed = given; });
    EXPECT_TRUE(eventually([&] { return isPressed.has_value(); }));
    EXPECT_TRUE(isPressed.value());
    EXPECT_TRUE(eventually([this] { return pixel({700, 700}) == green; }));
}

} // namespace velmo
