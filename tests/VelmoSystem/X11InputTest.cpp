#include "VelmoCore/Foundation/SystemScheduler.h"
#include "VelmoCore/HotKeys/KeyNames.h"
#include "VelmoSystem/Linux/X11/X11DragPasteboard.h"
#include "VelmoSystem/Linux/X11/X11HotKeyGrabber.h"
#include "VelmoSystem/Linux/X11/X11Pointer.h"

#include "tests/VelmoSystem/X11Test.h"

#include <X11/keysym.h>

namespace velmo {
namespace {

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
            xcb_selection_notify_event_t notify{};
            notify.response_type = XCB_SELECTION_NOTIFY;
            notify.time = request.time;
            notify.requestor = request.requestor;
            notify.selection = request.selection;
            // A refusal doesn't name the type, as Qt's.
            if (const auto known = answers.find(request.target); known != answers.end()) {
                notify.target = request.target;
                notify.property = request.property;
                xcb_change_property(m_client, XCB_PROP_MODE_REPLACE, request.requestor,
                                    request.property, XCB_ATOM_ATOM, 32,
                                    std::uint32_t(known->second.size()), known->second.data());
            }
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
    server->typeKey(XK_Num_Lock);
    server->typeKey(XK_Caps_Lock);
    server->typeKey(XK_n, {XK_Control_L, XK_Alt_L});
    EXPECT_TRUE(isPressed({1}));
    server->typeKey(XK_Num_Lock);
    server->typeKey(XK_Caps_Lock);
    server->typeKey(XK_n, {XK_Alt_L}); // not grabbed
    server->typeKey(XK_n, {XK_Super_L, XK_Shift_L});
    EXPECT_TRUE(isPressed({1, 2}));
    grabber.release(1);
    server->typeKey(XK_n, {XK_Control_L, XK_Alt_L});
    server->typeKey(XK_n, {XK_Super_L, XK_Shift_L});
    EXPECT_TRUE(isPressed({1, 2, 2}));
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

TEST_F(X11HotKeyTest, KnowsAKeyByWhatItTypesPlainly)
{
    const std::pair<xcb_keysym_t, std::optional<std::uint32_t>> cases[] = {
        {XK_1, 18}, {XK_slash, 44}, {XK_n, keyN}, {XK_Tab, 48}, {XK_Shift_L, {}}};
    for (const auto &[keysym, code] : cases)
        EXPECT_EQ(grabber.keyCode(server->keycode(keysym)), code) << keysym;
    EXPECT_FALSE(grabber.keyCode(0));
    for (std::uint32_t code = 0; code < 54; ++code) {
        const auto keysym = KeyNames::keysym(code);
        if (!keysym || *keysym == XK_space)
            continue;
        EXPECT_EQ(KeyNames::keyCodeAt(server->keycode(*keysym)), code) << "on the US keyboard";
    }
    for (const std::uint32_t elsewhere : {0U, 8U, 50U, 62U})
        EXPECT_FALSE(KeyNames::keyCodeAt(elsewhere)) << elsewhere;
}

/// What a key of the keyboard types from now on.
void put(xcb_keycode_t code, xcb_keysym_t lower, xcb_keysym_t upper)
{
    const xcb_keysym_t symbols[] = {lower, upper};
    xcb_change_keyboard_mapping(server->client(), 1, code, 2, symbols);
    xcb_flush(server->client());
}

TEST_F(X11HotKeyTest, FollowsAKeyToItsPlaceInANewLayout)
{
    ASSERT_TRUE(grabs<HotKeyGrabber::Grabbed>(1, altN));
    const xcb_keycode_t n = server->keycode(XK_n);
    const xcb_keycode_t q = server->keycode(XK_q);
    put(n, XK_q, XK_Q);
    put(q, XK_n, XK_N);
    EXPECT_TRUE(eventually([&] {
        server->typeKey(XK_n, {XK_Alt_L});
        return !pressed.empty();
    }));
    put(n, XK_n, XK_N);
    put(q, XK_q, XK_Q);
}

TEST_F(X11HotKeyTest, TellsWhatANewLayoutTakesAway)
{
    std::vector<HotKeyGrabber::Result> lost;
    int changes = 0;
    grabber.onLost = [&](HotKeyGrabber::ID, const HotKeyGrabber::Result &why) {
        lost.push_back(why);
    };
    grabber.onKeyboardChanged = [&] { ++changes; };
    const xcb_keycode_t n = server->keycode(XK_n);
    const xcb_keycode_t q = server->keycode(XK_q);
    ASSERT_TRUE(grabs<HotKeyGrabber::Grabbed>(1, altN));
    put(n, XK_m, XK_M);
    EXPECT_TRUE(eventually([&] { return lost.size() == 1 && changes > 0; }));
    EXPECT_EQ(std::get<HotKeyGrabber::Failed>(lost.at(0)).code, XCB_VALUE);

    changes = 0;
    put(n, XK_n, XK_N);
    EXPECT_TRUE(eventually([&] { return changes > 0; }));
    ASSERT_TRUE(grabs<HotKeyGrabber::Grabbed>(2, altN));
    xcb_grab_key(server->client(), false, server->root(), XCB_MOD_MASK_1, q, XCB_GRAB_MODE_ASYNC,
                 XCB_GRAB_MODE_ASYNC);
    put(q, XK_n, XK_N); // the first key that types it counts
    EXPECT_TRUE(eventually([&] { return lost.size() == 2; }));
    EXPECT_TRUE(std::holds_alternative<HotKeyGrabber::AlreadyTaken>(lost.back()));
    put(q, XK_q, XK_Q);
    xcb_ungrab_key(server->client(), q, server->root(), XCB_MOD_MASK_ANY);
    xcb_flush(server->client());
    grabber.onLost = nullptr;
    grabber.onKeyboardChanged = nullptr;
}

} // namespace
} // namespace velmo
