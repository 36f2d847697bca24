#include "VelmoSystem/Linux/X11/X11PanelWindow.h"

#include "tests/VelmoSystem/X11Test.h"
#include "tests/support/ManualScheduler.h"

#include <QRasterWindow>

#include <X11/keysym.h>

namespace velmo {
namespace {

class KeyWindow : public QRasterWindow {
public:
    int keys = 0;
    int presses = 0;

protected:
    void keyPressEvent(QKeyEvent *) override { ++keys; }
    void mousePressEvent(QMouseEvent *) override { ++presses; }
};

class X11PanelTest : public X11Test {
protected:
    std::unique_ptr<PanelWindow> show(QWindow &window, const Rect &frame)
    {
        auto panel = factory.adopt(window);
        panel->setFrame(frame);
        panel->orderFront();
        EXPECT_TRUE(eventually([&] { return window.isExposed(); }));
        return panel;
    }

    ManualScheduler scheduler;
    X11PanelWindowFactory factory{connection, scheduler};
};

TEST_F(X11PanelTest, StandsAboveAFullScreenWindowAndInNoList)
{
    KeyWindow window;
    const auto panel = show(window, {700, -60, 200, 60});
    EXPECT_EQ(panel->frame(), (Rect{700, -60, 200, 60}));
    const xcb_window_t other = makeFocusedWindow({0, 0, 1600, 900});
    server->tellManager(other, "_NET_WM_STATE", {1, server->atom("_NET_WM_STATE_FULLSCREEN")});
    EXPECT_TRUE(eventually([&] {
        const auto states = server->property(other, "_NET_WM_STATE");
        return std::ranges::find(states, server->atom("_NET_WM_STATE_FULLSCREEN")) != states.end();
    }));
    EXPECT_TRUE(panel->isOnActiveSpace());
    const X11Reply<xcb_query_tree_reply_t> tree(xcb_query_tree_reply(
        server->client(), xcb_query_tree(server->client(), server->root()), nullptr));
    EXPECT_EQ(xcb_query_tree_children(tree.get())[tree->children_len - 1], panel->id());
    const auto clients = server->property(server->root(), "_NET_CLIENT_LIST");
    EXPECT_EQ(clients, std::vector<std::uint32_t>{other});
    panel->orderOut();
    EXPECT_FALSE(panel->isOnActiveSpace());
}

TEST_F(X11PanelTest, TakesClicksInItsZoneAndLetsTheOthersThrough)
{
    makeWindow({600, 0, 400, 200}, false);
    KeyWindow window;
    const auto panel = show(window, {600, -200, 400, 200});
    const auto wentBelow = [&] {
        return eventually([] { return server->takeEvents(XCB_BUTTON_PRESS) == 1; });
    };
    server->takeEvents(XCB_BUTTON_PRESS);
    panel->setInteractiveZone(Rect{700, -100, 100, 100});
    ASSERT_TRUE(panel->isOnActiveSpace()); // the server has heard of the zone by then
    server->click(750, 50);
    EXPECT_TRUE(eventually([&] { return window.presses == 1; }));
    server->click(650, 50);
    EXPECT_TRUE(wentBelow());

    panel->setFrame({500, -200, 400, 200}); // the zone is the desktop's, not the window's
    ASSERT_TRUE(panel->isOnActiveSpace());
    server->click(790, 90);
    EXPECT_TRUE(eventually([&] { return window.presses == 2; }));

    panel->orderOut();
    window.destroy();
    panel->orderFront();
    ASSERT_TRUE(eventually([&] { return window.isExposed(); }));
    ASSERT_TRUE(panel->isOnActiveSpace());
    server->click(650, 50);
    EXPECT_TRUE(wentBelow()) << "a window made again";
    EXPECT_EQ(window.presses, 2);
}

class X11KeyboardTest : public X11PanelTest, public testing::WithParamInterface<const char *> {
protected:
    X11KeyboardTest()
    {
        if (manager->program() == QLatin1String(GetParam()))
            return;
        manager->terminate();
        EXPECT_TRUE(manager->waitForFinished());
        manager = &server->runWindowManager(QString::fromLatin1(GetParam()));
    }

    bool takesKeys(const std::function<bool()> &arrived)
    {
        server->takeEvents(XCB_KEY_PRESS);
        server->typeKey(XK_a);
        return eventually(arrived);
    }
};

TEST_P(X11KeyboardTest, GoesToThePanelAndBackToTheWindowThatHadIt)
{
    const xcb_window_t other = makeFocusedWindow({100, 300, 300, 200});
    const auto otherHasKey = [] { return server->takeEvents(XCB_KEY_PRESS) == 1; };
    ASSERT_TRUE(takesKeys(otherHasKey));
    KeyWindow window;
    KeyWindow second;
    const auto panel = show(window, {600, -100, 400, 100});
    const auto secondPanel = show(second, {1100, -100, 400, 100});
    EXPECT_EQ(server->focusedWindow(), other) << "showing a panel takes no keyboard";

    panel->makeKey();
    EXPECT_TRUE(eventually([&] { return panel->isKey(); }));
    EXPECT_TRUE(takesKeys([&] { return window.keys == 1; }));
    secondPanel->makeKey();
    EXPECT_TRUE(eventually([&] { return secondPanel->isKey(); }));
    panel->resignKey(); // no longer has it
    EXPECT_TRUE(takesKeys([&] { return second.keys == 1; }));

    secondPanel->resignKey();
    EXPECT_TRUE(eventually([&] { return server->focusedWindow() == other; }));
    EXPECT_TRUE(takesKeys(otherHasKey));
    EXPECT_TRUE(eventually([&] { return !panel->isKey() && !secondPanel->isKey(); }));
}

TEST_P(X11KeyboardTest, FallsToTheActiveWindowWhenTheOneThatHadItHasGone)
{
    const xcb_window_t first = makeFocusedWindow({100, 300, 300, 200});
    const xcb_window_t other = makeFocusedWindow({500, 300, 300, 200});
    KeyWindow window;
    const auto panel = show(window, {600, -100, 400, 100});
    panel->makeKey();
    ASSERT_TRUE(eventually([&] { return panel->isKey(); }));
    xcb_destroy_window(server->client(), other);
    xcb_flush(server->client());
    EXPECT_TRUE(eventually(
        [] { return server->property(server->root(), "_NET_CLIENT_LIST").size() == 1; }));
    panel->resignKey();
    EXPECT_TRUE(eventually([&] {
        const xcb_window_t focused = server->focusedWindow();
        return focused == first || focused == XCB_INPUT_FOCUS_POINTER_ROOT;
    }));
}

INSTANTIATE_TEST_SUITE_P(WindowManagers, X11KeyboardTest, testing::Values("xfwm4", "openbox"),
                         [](const auto &name) { return std::string(name.param); });

} // namespace
} // namespace velmo
