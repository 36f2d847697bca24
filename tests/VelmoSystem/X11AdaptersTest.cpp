#include "VelmoCore/Foundation/SystemScheduler.h"
#include "VelmoCore/HotKeys/KeyNames.h"
#include "VelmoSystem/Linux/X11/X11Displays.h"
#include "VelmoSystem/Linux/X11/X11DragPasteboard.h"
#include "VelmoSystem/Linux/X11/X11HotKeyGrabber.h"
#include "VelmoSystem/Linux/X11/X11PanelWindow.h"
#include "VelmoSystem/Linux/X11/X11Pointer.h"
#include "VelmoSystem/Linux/X11/X11Workspace.h"

#include "tests/support/Printers.h"
#include "tests/support/XServer.h"

#include <QGuiApplication>
#include <QRasterWindow>

#include <gtest/gtest.h>

#include <X11/keysym.h>
#include <algorithm>
#include <optional>

/// The adapters on a virtual X server of their own, with a window manager and other clients.
namespace velmo {
namespace {

XServer *server = nullptr;
QProcess *manager = nullptr;

class KeyWindow : public QRasterWindow {
public:
    int keys = 0;
    int presses = 0;

protected:
    void keyPressEvent(QKeyEvent *) override { ++keys; }
    void mousePressEvent(QMouseEvent *) override { ++presses; }
};

class X11Test : public testing::Test {
protected:
    ~X11Test() override
    {
        for (const xcb_window_t window : m_windows)
            xcb_destroy_window(server->client(), window);
        xcb_flush(server->client());
    }

    xcb_window_t makeWindow(const QRect &frame, bool isManaged = true)
    {
        return m_windows.emplace_back(server->makeWindow(frame, isManaged));
    }

    /// A window of another application that the window manager has given the keyboard.
    xcb_window_t makeFocusedWindow(const QRect &frame)
    {
        const xcb_window_t window = makeWindow(frame);
        EXPECT_TRUE(eventually([&] {
            const auto clients = server->property(server->root(), "_NET_CLIENT_LIST");
            return std::ranges::find(clients, window) != clients.end();
        }));
        server->tellManager(window, "_NET_ACTIVE_WINDOW", {2}); // as a pager does
        EXPECT_TRUE(eventually([&] {
            const auto active = server->property(server->root(), "_NET_ACTIVE_WINDOW");
            return !active.empty() && active.front() == window && server->focusedWindow() == window;
        }));
        return window;
    }

    /// Waits until the server has heard all that the adapters asked so far.
    void settle() { EXPECT_TRUE(connection.pointerPosition()); }

    X11Connection connection;
    X11Displays displays{connection, ScreenCutouts({}, {})};

private:
    std::vector<xcb_window_t> m_windows;
};

class X11PointerTest : public X11Test {
protected:
    X11PointerTest()
    {
        pointer.start([this](const Pointer::Sample &sample) { samples.push_back(sample); });
        settle();
    }

    bool sees(const Pointer::Sample &wanted)
    {
        return eventually([&] {
            return std::ranges::any_of(samples, [&](const Pointer::Sample &sample) {
                return sample.change == wanted.change && sample.position == wanted.position &&
                       sample.window == wanted.window && sample.isButtonDown == wanted.isButtonDown;
            });
        });
    }

    SystemScheduler scheduler;
    X11Pointer pointer{connection, displays, scheduler};
    std::vector<Pointer::Sample> samples;
};

TEST_F(X11PointerTest, TellsWhereThePointerIsInPointsAndWhatIsUnderAPress)
{
    const xcb_window_t window = makeWindow({100, 100, 50, 50}, false);
    server->movePointer(120, 130);
    EXPECT_TRUE(sees({.position = {120, -131}}));
    EXPECT_EQ(pointer.location(), (Point{120, -131}));
    server->setButton(1, true);
    EXPECT_TRUE(sees({Pointer::Change::pressed, {120, -131}, window, true}));
    server->movePointer(121, 130);
    EXPECT_TRUE(sees({Pointer::Change::moved, {121, -131}, 0, true}));
    server->setButton(1, false);
    EXPECT_TRUE(sees({Pointer::Change::released, {121, -131}, 0, false}));
}

TEST_F(X11PointerTest, SeesThePointerDuringAnothersGrabAndPassesOverTheWheel)
{
    free(xcb_grab_pointer_reply(server->client(),
                                xcb_grab_pointer(server->client(), false, server->root(),
                                                 XCB_EVENT_MASK_POINTER_MOTION, XCB_GRAB_MODE_ASYNC,
                                                 XCB_GRAB_MODE_ASYNC, XCB_NONE, XCB_NONE,
                                                 XCB_CURRENT_TIME),
                                nullptr));
    server->setButton(5, true);
    server->setButton(5, false);
    server->movePointer(300, 200);
    EXPECT_TRUE(sees({.position = {300, -201}}));
    xcb_ungrab_pointer(server->client(), XCB_CURRENT_TIME);
    EXPECT_TRUE(std::ranges::all_of(samples, [](const Pointer::Sample &sample) {
        return sample.change == Pointer::Change::moved;
    }));
}

TEST_F(X11PointerTest, TellsMovesThatPileUpAsOne)
{
    samples.clear();
    for (int x = 0; x < 200; ++x)
        server->movePointer(400 + x, 50);
    EXPECT_TRUE(sees({.position = {599, -51}}));
    EXPECT_LT(samples.size(), 50U);
}

/// A drag source that answers what it is asked with what `answers` holds.
class DragSource {
public:
    DragSource()
        : m_client(xcb_connect(server->display().constData(), nullptr)),
          m_window(xcb_generate_id(m_client))
    {
        xcb_create_window(m_client, 0, m_window, server->root(), 0, 0, 1, 1, 0,
                          XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
        xcb_flush(m_client);
    }
    ~DragSource() { xcb_disconnect(m_client); }

    void begin()
    {
        xcb_set_selection_owner(m_client, m_window, server->atom("XdndSelection"),
                                XCB_CURRENT_TIME);
        xcb_flush(m_client);
    }

    void list(const std::vector<std::uint32_t> &types)
    {
        server->setProperty(m_window, "XdndTypeList", XCB_ATOM_ATOM, types);
    }

    /// Answers the requests that have come.
    void answer()
    {
        while (const X11Reply<xcb_generic_event_t> event{xcb_poll_for_event(m_client)}) {
            if ((event->response_type & 0x7f) != XCB_SELECTION_REQUEST)
                continue;
            const auto &request = reinterpret_cast<const xcb_selection_request_event_t &>(*event);
            const auto known = answers.find(request.target);
            if (known != answers.end())
                xcb_change_property(m_client, XCB_PROP_MODE_REPLACE, request.requestor,
                                    request.property, XCB_ATOM_ATOM, 32,
                                    std::uint32_t(known->second.size()), known->second.data());
            xcb_selection_notify_event_t notify{};
            notify.response_type = XCB_SELECTION_NOTIFY;
            notify.time = request.time;
            notify.requestor = request.requestor;
            notify.selection = request.selection;
            notify.target =
                known != answers.end() ? request.target : xcb_atom_t(XCB_ATOM_NONE); // as Qt does
            notify.property = known != answers.end() ? request.property : xcb_atom_t(XCB_ATOM_NONE);
            xcb_send_event(m_client, false, request.requestor, 0,
                           reinterpret_cast<const char *>(&notify));
            xcb_flush(m_client);
        }
    }

    std::map<xcb_atom_t, std::vector<std::uint32_t>> answers;

private:
    xcb_connection_t *m_client;
    xcb_window_t m_window;
};

using X11DragPasteboardTest = X11Test;

TEST_F(X11DragPasteboardTest, ReadsWhatASourceOffersHoweverItTells)
{
    const xcb_atom_t targets = server->atom("TARGETS");
    const xcb_atom_t files = server->atom("text/uri-list");
    const xcb_atom_t link = server->atom("text/x-moz-url");
    const xcb_atom_t text = server->atom("UTF8_STRING");
    const xcb_atom_t image = server->atom("image/png");
    const struct {
        const char *name;
        std::map<xcb_atom_t, std::vector<std::uint32_t>> answers;
        std::vector<std::uint32_t> list;
        bool hasFiles;
        bool hasLinks;
        bool hasText;
    } cases[] = {
        {"files by TARGETS", {{targets, {targets, image, files}}}, {}, true, true, false},
        {"text by TARGETS, with an old list", {{targets, {text}}}, {files}, false, false, true},
        {"a link by the drag protocol's list", {}, {image, link, text}, false, true, true},
        {"files with neither", {{files, {0}}}, {}, true, true, false},
    };
    X11DragPasteboard pasteboard(connection);
    settle();
    std::uint64_t count = pasteboard.changeCount();
    for (const auto &[name, answers, list, hasFiles, hasLinks, hasText] : cases) {
        SCOPED_TRACE(name);
        DragSource source;
        source.answers = answers;
        if (!list.empty())
            source.list(list);
        source.begin();
        EXPECT_TRUE(eventually([&] { return pasteboard.changeCount() == count + 1; }));
        EXPECT_FALSE(pasteboard.contents().hasFiles || pasteboard.contents().hasText);
        EXPECT_TRUE(eventually([&] {
            source.answer();
            const auto contents = pasteboard.contents();
            return contents.hasFiles == hasFiles && contents.hasLinks == hasLinks &&
                   contents.hasText == hasText;
        }));
        count = pasteboard.changeCount();
    }
}

TEST_F(X11DragPasteboardTest, CountsASecondDragOfOneSourceAndForgetsTheFirstOnesContent)
{
    X11DragPasteboard pasteboard(connection);
    settle();
    DragSource source;
    source.answers = {{server->atom("TARGETS"), {server->atom("text/plain")}}};
    source.begin();
    ASSERT_TRUE(eventually([&] {
        source.answer();
        return pasteboard.contents().hasText;
    }));
    source.answers = {};
    source.begin();
    EXPECT_TRUE(eventually([&] { return pasteboard.changeCount() == 2; }));
    EXPECT_FALSE(pasteboard.contents().hasText);
}

constexpr std::uint32_t keyN = 45;
const KeyCombo altN{keyN, KeyCombo::option};
const KeyCombo controlAltN{keyN, KeyCombo::control | KeyCombo::option};

class X11HotKeyTest : public X11Test {
protected:
    X11HotKeyTest()
    {
        grabber.onPressed = [this](HotKeyGrabber::ID id) { pressed.push_back(id); };
    }

    bool isPressed(const std::vector<HotKeyGrabber::ID> &ids)
    {
        return eventually([&] { return pressed == ids; });
    }

    template <class Kind>
    bool grabs(HotKeyGrabber::ID id, const KeyCombo &combo)
    {
        return std::holds_alternative<Kind>(grabber.grab(id, combo));
    }

    X11HotKeyGrabber grabber{connection};
    std::vector<HotKeyGrabber::ID> pressed;
};

TEST_F(X11HotKeyTest, HearsItsKeysWhateverLocksAreOn)
{
    ASSERT_TRUE(grabs<HotKeyGrabber::Grabbed>(1, controlAltN));
    ASSERT_TRUE(grabs<HotKeyGrabber::Grabbed>(2, {keyN, KeyCombo::command | KeyCombo::shift}));
    server->typeKey(XK_n, {XK_Control_L, XK_Alt_L});
    EXPECT_TRUE(isPressed({1}));
    server->typeKey(XK_Num_Lock);
    server->typeKey(XK_Caps_Lock);
    server->typeKey(XK_n, {XK_Control_L, XK_Alt_L});
    EXPECT_TRUE(isPressed({1, 1}));
    server->typeKey(XK_Num_Lock);
    server->typeKey(XK_Caps_Lock);
    server->typeKey(XK_n, {XK_Alt_L}); // not grabbed
    server->typeKey(XK_n, {XK_Super_L, XK_Shift_L});
    EXPECT_TRUE(isPressed({1, 1, 2}));
    grabber.release(1);
    server->typeKey(XK_n, {XK_Control_L, XK_Alt_L});
    server->typeKey(XK_n, {XK_Super_L, XK_Shift_L});
    EXPECT_TRUE(isPressed({1, 1, 2, 2}));
}

TEST_F(X11HotKeyTest, TellsAHeldKeyOnce)
{
    ASSERT_TRUE(grabs<HotKeyGrabber::Grabbed>(1, altN));
    server->setKey(XK_Alt_L, true);
    server->setKey(XK_n, true);
    // Long enough for repeats: the virtual server repeats as a keyboard does.
    SystemScheduler scheduler;
    bool isOver = false;
    const auto held = scheduler.after(1.2s, [&] { isOver = true; });
    EXPECT_TRUE(eventually([&] { return isOver; }));
    server->setKey(XK_n, false);
    server->setKey(XK_n, true);
    server->setKey(XK_n, false);
    server->setKey(XK_Alt_L, false);
    EXPECT_TRUE(isPressed({1, 1}));
}

TEST_F(X11HotKeyTest, LeavesAKeyThatAnotherClientHoldsInPart)
{
    const xcb_keycode_t key = server->keycode(XK_n);
    const auto grabbedElsewhere = xcb_grab_key_checked(server->client(), false, server->root(),
                                                       XCB_MOD_MASK_1 | XCB_MOD_MASK_LOCK, key,
                                                       XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
    ASSERT_FALSE(xcb_request_check(server->client(), grabbedElsewhere));
    EXPECT_TRUE(grabs<HotKeyGrabber::AlreadyTaken>(1, altN));

    // None of the variants may be left behind.
    X11Connection other;
    X11HotKeyGrabber otherGrabber(other);
    xcb_ungrab_key(server->client(), key, server->root(), XCB_MOD_MASK_ANY);
    xcb_flush(server->client());
    EXPECT_TRUE(eventually([&] {
        return std::holds_alternative<HotKeyGrabber::Grabbed>(otherGrabber.grab(1, altN));
    }));
    EXPECT_TRUE(grabs<HotKeyGrabber::AlreadyTaken>(1, altN));
    otherGrabber.release(1);
    xcb_flush(other.handle());
    EXPECT_TRUE(eventually([&] { return grabs<HotKeyGrabber::Grabbed>(1, altN); }));
    EXPECT_TRUE(grabs<HotKeyGrabber::AlreadyTaken>(2, altN)) << "taken by our own id 1";
    EXPECT_TRUE(grabs<HotKeyGrabber::Failed>(3, {9'999, KeyCombo::option}));
}

TEST_F(X11HotKeyTest, FollowsAKeyToItsPlaceInANewLayout)
{
    ASSERT_TRUE(grabs<HotKeyGrabber::Grabbed>(1, altN));
    const xcb_keycode_t n = server->keycode(XK_n);
    const xcb_keycode_t q = server->keycode(XK_q);
    const auto put = [](xcb_keycode_t code, xcb_keysym_t lower, xcb_keysym_t upper) {
        const xcb_keysym_t symbols[] = {lower, upper};
        xcb_change_keyboard_mapping(server->client(), 1, code, 2, symbols);
        xcb_flush(server->client());
    };
    put(n, XK_q, XK_Q);
    put(q, XK_n, XK_N);
    EXPECT_TRUE(eventually([&] {
        server->typeKey(XK_n, {XK_Alt_L});
        return !pressed.empty();
    }));
    put(n, XK_n, XK_N);
    put(q, XK_q, XK_Q);
}

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

    X11PanelWindowFactory factory{connection};
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
    ASSERT_TRUE(panel->isOnActiveSpace()); // the server has heard of the zone by then
    server->click(700, 50);
    EXPECT_TRUE(wentBelow()) << "no zone at all";

    panel->setInteractiveZone(Rect{700, -100, 100, 100});
    ASSERT_TRUE(panel->isOnActiveSpace());
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
    EXPECT_TRUE(wentBelow()) << "a window made anew";
    EXPECT_EQ(window.presses, 2);
}

TEST_F(X11PanelTest, IsCutToItsOpaqueZoneOnlyWhileNothingBlendsWindows)
{
    KeyWindow window;
    const auto panel = show(window, {600, -200, 400, 200});
    panel->setOpaqueZone({700, -50, 100, 50});
    const auto isCut = [&] { return server->boundingWidth(panel->id()) == 100; };
    EXPECT_TRUE(eventually(isCut));
    QProcess &compositor = server->run(QStringLiteral("picom"),
                                       {QStringLiteral("--backend"), QStringLiteral("xrender")});
    EXPECT_TRUE(eventually([&] { return server->boundingWidth(panel->id()) == 400; }));
    compositor.terminate();
    EXPECT_TRUE(compositor.waitForFinished());
    EXPECT_TRUE(eventually(isCut));
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

TEST_P(X11KeyboardTest, GoesToThePanelDuringAHotKeyAndBackWhenItIsOrderedOut)
{
    const xcb_window_t other = makeFocusedWindow({100, 300, 300, 200});
    KeyWindow window;
    const auto panel = show(window, {600, -100, 400, 100});
    X11HotKeyGrabber grabber(connection);
    grabber.onPressed = [&](auto) { panel->makeKey(); };
    ASSERT_TRUE(std::holds_alternative<HotKeyGrabber::Grabbed>(grabber.grab(1, altN)));
    server->setKey(XK_Alt_L, true);
    server->setKey(XK_n, true); // the server holds the keyboard for us until it's released
    EXPECT_TRUE(eventually([&] { return panel->isKey(); }));
    server->setKey(XK_n, false);
    server->setKey(XK_Alt_L, false);
    window.keys = 0;
    EXPECT_TRUE(takesKeys([&] { return window.keys == 1; }));
    panel->orderOut();
    EXPECT_TRUE(eventually([&] { return server->focusedWindow() == other; }));
}

TEST_P(X11KeyboardTest, IsLeftToAWindowThatTheUserClicks)
{
    const xcb_window_t other = makeFocusedWindow({100, 300, 300, 200});
    KeyWindow window;
    const auto panel = show(window, {600, -100, 400, 100});
    panel->makeKey();
    ASSERT_TRUE(eventually([&] { return panel->isKey(); }));
    server->click(250, 420);
    EXPECT_TRUE(eventually([&] { return server->focusedWindow() == other; }));
    EXPECT_TRUE(eventually([&] { return !panel->isKey(); }));
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

class X11WorkspaceTest : public X11Test {
protected:
    X11WorkspaceTest()
    {
        QObject::connect(&workspace, &Workspace::windowsChanged, [this] { ++windowChanges; });
        QObject::connect(&workspace, &Workspace::activeSpaceChanged, [this] { ++spaceChanges; });
        QObject::connect(&workspace, &Workspace::windowManagerChanged,
                         [this] { ++managerChanges; });
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
    int managerChanges = 0;
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

TEST_F(X11WorkspaceTest, TellsWhenAnotherWindowManagerTakesOver)
{
    manager->terminate();
    ASSERT_TRUE(manager->waitForFinished());
    manager = &server->runWindowManager(manager->program());
    EXPECT_TRUE(eventually([&] { return managerChanges == 1; }));
}

TEST_F(X11Test, TellsScreensInPointsWithTheTopEdgeHighest)
{
    int changes = 0;
    QObject::connect(&displays, &Displays::changed, [&] { ++changes; });
    const auto xrandr = [](const QStringList &arguments) {
        EXPECT_TRUE(server->run(QStringLiteral("xrandr"), arguments).waitForFinished());
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
    EXPECT_NE(both[0].displayID, both[1].displayID);

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
