#include "VelmoSystem/Input/DragSessionWatcher.h"

#include "VelmoCore/Foundation/LocalizedError.h"
#include "VelmoSystem/Input/MouseEventMonitor.h"

#include "tests/support/FakeDragPasteboard.h"
#include "tests/support/FakePointer.h"

#include <gtest/gtest.h>

namespace velmo {
namespace {

TEST(DragSessionWatcher, TakesAPressAndMoveForNoDrag)
{
    FakeDragPasteboard pasteboard;
    pasteboard.begin({.hasFiles = true}); // an earlier session, long over
    DragSessionWatcher watcher(pasteboard);
    EXPECT_FALSE(watcher.mouseDragged());
    watcher.mouseDown();
    EXPECT_FALSE(watcher.mouseDragged());
    EXPECT_FALSE(watcher.mouseUp());
}

TEST(DragSessionWatcher, TakesASessionWithContentForADragUntilTheButtonIsUp)
{
    const struct {
        DragPasteboard::Contents contents;
        bool isDrag;
    } cases[] = {{{.hasFiles = true}, true},
                 {{.hasLinks = true}, true},
                 {{.hasText = true}, true},
                 {{}, false}};
    for (const auto &[contents, isDrag] : cases) {
        FakeDragPasteboard pasteboard;
        DragSessionWatcher watcher(pasteboard);
        watcher.mouseDown();
        pasteboard.begin(contents);
        EXPECT_EQ(watcher.mouseDragged(), isDrag);
        EXPECT_EQ(watcher.mouseUp(), isDrag);
        EXPECT_FALSE(watcher.mouseUp());
    }
}

TEST(DragSessionWatcher, WaitsForASourceThatAnswersLate)
{
    FakeDragPasteboard pasteboard;
    DragSessionWatcher watcher(pasteboard);
    watcher.mouseDown();
    pasteboard.begin({});
    EXPECT_FALSE(watcher.mouseDragged());
    pasteboard.offered = {.hasText = true};
    EXPECT_TRUE(watcher.mouseDragged());
    pasteboard.offered = {}; // the source lets go before the button does
    EXPECT_TRUE(watcher.mouseDragged());
    EXPECT_TRUE(watcher.mouseUp());
}

TEST(MouseEventMonitor, TellsMovesFromDragsByTheButton)
{
    FakePointer pointer;
    MouseEventMonitor monitor(pointer);
    std::vector<std::size_t> kinds;
    WindowID pressed = 0;
    monitor.start([&](const MouseEventMonitor::Event &event) {
        kinds.push_back(event.index());
        if (const auto *down = std::get_if<MouseEventMonitor::Down>(&event))
            pressed = down->window;
    });
    pointer.moveTo({1, 1});
    pointer.press({1, 1}, 42);
    pointer.moveTo({2, 2});
    pointer.release({2, 2});
    pointer.moveTo({3, 3});
    EXPECT_EQ(kinds, (std::vector<std::size_t>{0, 1, 2, 3, 0}));
    EXPECT_EQ(pressed, 42U);
}

TEST(MouseEventMonitor, GoesOnWithoutAPointerToWatch)
{
    struct Unwatchable : FakePointer {
        void start(std::function<void(const Sample &)>) override
        {
            throw LocalizedError(QStringLiteral("não deu"));
        }
    } pointer;
    MouseEventMonitor monitor(pointer);
    EXPECT_NO_THROW(monitor.start([](const MouseEventMonitor::Event &) { FAIL(); }));
}

} // namespace
} // namespace velmo
