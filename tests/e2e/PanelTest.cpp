#include "tests/e2e/OrvaneTest.h"

#include <X11/keysym.h>

namespace velmo {

namespace {

std::chrono::milliseconds timed(const std::function<void()> &body)
{
    const auto start = std::chrono::steady_clock::now();
    body();
    return std::chrono::ceil<std::chrono::milliseconds>(std::chrono::steady_clock::now() - start);
}

} // namespace

class PanelTest : public ManagedTest {};

ORVANE_UNDER_EACH_MANAGER(PanelTest);

TEST_P(PanelTest, OpensUnderAPointerThatRestsAndClosesBehindOneThatLeaves)
{
    writeSettings({{"hoverDelay", 0.3}, {"closeDelay", 0.4}});
    launch();
    screen.movePointer(notch.x(), notch.y());
    pause(60ms);
    screen.movePointer(700, 700);
    EXPECT_TRUE(keeps("collapsed", 500ms));

    EXPECT_GE(timed([&] {
                  screen.movePointer(notch.x(), notch.y());
                  EXPECT_TRUE(shows("expanded"));
              }),
              300ms);
    EXPECT_GE(timed([&] {
                  screen.movePointer(700, 700);
                  EXPECT_TRUE(shows("collapsed"));
              }),
              400ms);
}

TEST_P(PanelTest, LetsClicksBesideItsShapeThrough)
{
    writeSettings(
        {{"hoverBehavior", "none"}, {"closeOnClickOutside", false}, {"animationsEnabled", false}});
    makeGreenWindow();
    launch();
    const auto reachesTheWindow = [&](const QPoint &point, std::chrono::milliseconds patience) {
        screen.click(point.x(), point.y());
        return eventually([&] { return screen.takeEvents(XCB_BUTTON_PRESS) > 0; }, patience);
    };
    const auto goesThrough = [&](const QPoint &point) { return reachesTheWindow(point, 20s); };
    const auto stays = [&](const QPoint &point) { return !reachesTheWindow(point, 300ms); };
    const QRect canvas = frame("canvas");
    const QRect small = frame("shape");
    EXPECT_TRUE(goesThrough({small.left() - 30, 10}));
    EXPECT_TRUE(goesThrough({small.center().x(), small.bottom() + 30}));
    EXPECT_EQ(presentation(), "collapsed");
    EXPECT_TRUE(stays(notch));
    EXPECT_TRUE(shows("expanded"));

    const QRect large = frame("shape");
    ASSERT_GT(large.left() - canvas.left(), 20);
    EXPECT_TRUE(stays({large.left() + 30, large.bottom() - 30}));
    EXPECT_TRUE(goesThrough({canvas.left() + 10, large.bottom() - 30}));
    EXPECT_TRUE(goesThrough({large.center().x(), canvas.bottom() - 10}));
}

TEST_P(PanelTest, GivesTheKeyboardBackWhenTheHotKeyClosesIt)
{
    const xcb_window_t window = makeGreenWindow({100, 300, 400, 300});
    launch();
    const auto typesIntoTheWindow = [&](std::chrono::milliseconds patience) {
        screen.takeEvents(XCB_KEY_PRESS);
        screen.typeKey(XK_a);
        return eventually([&] { return screen.takeEvents(XCB_KEY_PRESS) == 1; }, patience);
    };
    for (int round = 0; round < 2; ++round) {
        pressHotKey();
        ASSERT_TRUE(shows("expanded"));
        ASSERT_TRUE(eventually([&] { return screen.focusedWindow() != window; }));
        EXPECT_FALSE(typesIntoTheWindow(500ms));
        pressHotKey();
        ASSERT_TRUE(shows("collapsed"));
        EXPECT_TRUE(eventually([&] { return screen.focusedWindow() == window; }));
        EXPECT_TRUE(typesIntoTheWindow(20s));
    }
}

TEST_P(PanelTest, AnswersItsKeysUnderEachLayout)
{
    launch();
    const auto module = [&] { return display()["module"].toString(); };
    constexpr xcb_keycode_t keyOfOne = 10, keyOfTwo = 11, keyOfW = 25, keyOfZ = 52;
    const std::tuple<const char *, xcb_keycode_t, bool> cases[] = {
        {"fr", keyOfW, true}, {"fr", keyOfZ, true}, {"ru", keyOfW, true}, {"ru", keyOfZ, false}};
    for (const auto &[layout, closing, closes] : cases) {
        SCOPED_TRACE(layout);
        screen.setLayout(layout);
        ASSERT_EQ(run({"open", "system"}).exitCode, 0);
        ASSERT_TRUE(eventually([&] { return module() == "system"; }));
        screen.typeKeyAt(keyOfTwo, {XK_Control_L});
        EXPECT_TRUE(eventually([&] { return module() == "tools"; }));
        screen.typeKeyAt(keyOfOne, {XK_Control_L});
        EXPECT_TRUE(eventually([&] { return module() == "home"; }));
        screen.typeKeyAt(closing, {XK_Control_L});
        EXPECT_TRUE(closes ? shows("collapsed") : keeps("expanded", 300ms));
    }
}

TEST_P(PanelTest, MakesWayForAFullScreenWindow)
{
    const xcb_window_t window = makeGreenWindow({100, 300, 400, 300});
    const auto setFullScreen = [&](bool isOn) {
        screen.tellManager(window, "_NET_WM_STATE",
                           {isOn ? 1U : 0U, screen.atom("_NET_WM_STATE_FULLSCREEN"), 0, 1});
    };
    launch();
    pressHotKey();
    ASSERT_TRUE(shows("expanded"));
    setFullScreen(true);
    EXPECT_TRUE(becomesVisible(false));
    EXPECT_TRUE(eventually([&] { return pixel(notch) == green; }));
    setFullScreen(false);
    EXPECT_TRUE(becomesVisible(true));
    EXPECT_EQ(presentation(), "collapsed");
    EXPECT_TRUE(eventually([&] { return pixel(notch) == 0; }));
}

TEST_P(PanelTest, OutlivesItsWindowManager)
{
    launch();
    manager.kill();
    manager.waitForFinished();
    // The second xfwm4 on a server draws nothing if it is to composite.
    const bool isXfwm = GetParam() == std::string_view("xfwm4");
    screen.runWindowManager(GetParam(), isXfwm ? QStringList{"--compositor=off"} : QStringList());
    for (std::uint32_t desktop = 0; desktop < 2; ++desktop) {
        screen.tellManager(screen.root(), "_NET_CURRENT_DESKTOP", {desktop, XCB_CURRENT_TIME});
        ASSERT_TRUE(eventually([&] {
            return screen.property(screen.root(), "_NET_CURRENT_DESKTOP") == std::vector{desktop};
        }));
        makeGreenWindow();
        EXPECT_TRUE(eventually([&] { return pixel({20, 5}) == green && pixel(notch) == 0; }));
        screen.movePointer(notch.x(), notch.y());
        EXPECT_TRUE(shows("expanded"));
        screen.movePointer(700, 700);
        EXPECT_TRUE(shows("collapsed"));
    }
}

} // namespace velmo
