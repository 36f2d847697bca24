#include "VelmoSystem/Linux/X11/X11HotKeyGrabber.h"
#include "VelmoSystem/Linux/X11/X11Session.h"
#include "VelmoSystem/Linux/X11/X11Workspace.h"

#include "tests/VelmoSystem/X11Test.h"

#include <QGuiApplication>

namespace velmo {

XServer *server = nullptr;
QProcess *manager = nullptr;

namespace {

class X11WorkspaceTest : public X11Test {
protected:
    X11WorkspaceTest()
    {
        QObject::connect(&workspace, &Workspace::windowsChanged, [this] { ++windowChanges; });
        QObject::connect(&workspace, &Workspace::activeSpaceChanged, [this] { ++spaceChanges; });
    }

    std::optional<Workspace::Window> find(xcb_window_t id) const
    {
        for (const auto &window : workspace.windows())
            if (window.id == id)
                return window;
        return std::nullopt;
    }

    X11Workspace workspace{connection, displays};
    int windowChanges = 0;
    int spaceChanges = 0;
};

TEST_F(X11WorkspaceTest, FollowsAWindowIntoFullScreenAndToAnotherDesktop)
{
    const xcb_window_t window = makeFocusedWindow({100, 200, 300, 200});
    EXPECT_TRUE(eventually([&] { return find(window) && !find(window)->isFullscreen; }));
    const Size size{find(window)->frame.width, find(window)->frame.height};
    EXPECT_EQ(size, (Size{300, 200}));

    windowChanges = 0;
    server->tellManager(window, "_NET_WM_STATE", {1, server->atom("_NET_WM_STATE_FULLSCREEN")});
    EXPECT_TRUE(eventually([&] {
        return windowChanges > 0 && find(window) && find(window)->isFullscreen &&
               find(window)->frame == Rect{0, -900, 1600, 900};
    }));

    server->tellManager(server->root(), "_NET_CURRENT_DESKTOP", {1});
    EXPECT_TRUE(eventually([&] { return spaceChanges == 1 && !find(window); }));
    server->tellManager(server->root(), "_NET_CURRENT_DESKTOP", {0});
    EXPECT_TRUE(eventually([&] { return spaceChanges == 2 && find(window); }));
    windowChanges = 0;
    server->setProperty(window, "_NET_WM_USER_TIME", XCB_ATOM_CARDINAL, {77});
    server->tellManager(window, "WM_CHANGE_STATE", {3});
    EXPECT_TRUE(eventually([&] { return !find(window); })) << "minimised";
    EXPECT_GT(windowChanges, 0);
}

TEST_F(X11Test, TellsScreensInPointsWithTheTopEdgeHighest)
{
    int changes = 0;
    QObject::connect(&displays, &Displays::changed, [&] { ++changes; });
    const auto xrandr = [](const QStringList &arguments) {
        EXPECT_TRUE(server->run(u"xrandr"_qs, arguments).waitForFinished());
    };
    const auto whole = displays.allDescriptors();
    ASSERT_EQ(whole.size(), 1U);
    EXPECT_EQ(whole[0].frame, (Rect{0, -900, 1600, 900}));
    EXPECT_TRUE(whole[0].isPrimary);

    xrandr({"--setmonitor", "eDP-left", "800/200x900/200+0+0", "screen"});
    xrandr({"--setmonitor", "right", "800/200x600/150+800+300", "none"});
    ASSERT_TRUE(eventually([&] { return displays.allDescriptors().size() == 2; }));
    EXPECT_TRUE(eventually([&] { return changes > 0; }));
    const auto both = displays.allDescriptors();
    EXPECT_EQ(both[0].frame, (Rect{0, -900, 800, 900}));
    EXPECT_EQ(both[1].frame, (Rect{800, -900, 800, 600}));
    EXPECT_TRUE(both[0].isBuiltIn);
    EXPECT_FALSE(both[1].isBuiltIn);

    server->movePointer(799, 300);
    EXPECT_EQ(displays.screenUnderMouse(), both[0].displayID);
    server->movePointer(800, 300);
    EXPECT_EQ(displays.screenUnderMouse(), both[1].displayID);
    server->movePointer(800, 299); // above the lower screen
    EXPECT_EQ(displays.screenUnderMouse(), std::nullopt);
    EXPECT_EQ(displays.nativeFrame(both[1].displayID, {900, -400, 100, 50}),
              (std::array{900, 350, 100, 50}));
    EXPECT_EQ(displays.toPoints(QRect(900, 350, 100, 50)), (Rect{900, -400, 100, 50}));

    xrandr({"--delmonitor", "right"});
    xrandr({"--delmonitor", "eDP-left"});
    EXPECT_TRUE(eventually([&] { return displays.allDescriptors() == whole; }));
}

TEST(X11Session, ChoosesThePlatformForOrvaneOnly)
{
    constexpr const char *platform = "QT_QPA_PLATFORM";
    const QByteArray before = qgetenv(platform);
    for (const char *users : {"", "offscreen"}) {
        *users ? qputenv(platform, users) : qunsetenv(platform);
        {
            const X11Session session;
            EXPECT_EQ(qgetenv(platform), *users ? users : "xcb");
        }
        EXPECT_EQ(qgetenv(platform), users);
    }
    before.isNull() ? qunsetenv(platform) : qputenv(platform, before);
}

TEST(X11Connection, GoesSilentWhenItsServerGoes)
{
    auto shortLived = std::make_unique<XServer>("640x480x24");
    X11Connection connection(shortLived->display());
    EXPECT_TRUE(connection.pointerPosition());
    shortLived.reset();
    EXPECT_TRUE(eventually([&] { return xcb_connection_has_error(connection.handle()) != 0; }));
    EXPECT_FALSE(connection.pointerPosition());
    EXPECT_TRUE(connection.property(connection.root(), connection.atom("WM_NAME")).empty());
    X11HotKeyGrabber grabber(connection);
    EXPECT_TRUE(std::holds_alternative<HotKeyGrabber::Failed>(grabber.grab(1, altN)));
}

} // namespace
} // namespace velmo

int main(int argc, char **argv)
{
    testing::InitGoogleTest(&argc, argv);
    velmo::XServer server;
    qputenv("DISPLAY", server.display());
    qputenv("QT_QPA_PLATFORM", "xcb");
    QGuiApplication application(argc, argv);
    velmo::server = &server;
    velmo::manager = &server.runWindowManager();
    return RUN_ALL_TESTS();
}
