#include "VelmoSystem/Input/DragSessionWatcher.h"

#include "VelmoCore/Foundation/LocalizedError.h"
#include "VelmoSystem/Input/MouseEventMonitor.h"

#include "tests/support/FakeDragPasteboard.h"
#include "tests/support/FakePointer.h"

#include <gtest/gtest.h>

namespace velmo {
namespace {

class DragSessionWatcherTest : public testing::Test {
protected:
    FakeDragPasteboard pasteboard;
    DragSessionWatcher watcher{pasteboard};
};

TEST_F(DragSessionWatcherTest, TakesAPressAndMoveForNoDrag)
{
    pasteboard.begin({.hasFiles = true}); // an earlier session, long over
    watcher.mouseDown();
    EXPECT_FALSE(watcher.mouseDragged());
    EXPECT_FALSE(watcher.mouseUp());
}

TEST_F(DragSessionWatcherTest, TakesASessionWithContentForADragUntilTheButtonIsUp)
{
    for (const auto &[contents, isDrag] :
         {std::pair(DragPasteboard::Contents{.hasFiles = true}, true),
          {{.hasLinks = true}, true},
          {{.hasText = true}, true},
          {{}, false}}) {
        watcher.mouseDown();
        pasteboard.begin(contents);
        EXPECT_EQ(watcher.mouseDragged(), isDrag);
        EXPECT_EQ(watcher.mouseUp(), isDrag);
        EXPECT_FALSE(watcher.mouseUp());
    }
}

TEST_F(DragSessionWatcherTest, WaitsForASourceThatAnswersLate)
{
    watcher.mouseDown();
    pasteboard.begin({});
    EXPECT_FALSE(watcher.mouseDragged());
    pasteboard.offered = {.hasText = true};
    EXPECT_TRUE(watcher.mouseDragged());
    pasteboard.offered = {}; // the source lets go before the button does
    EXPECT_TRUE(watcher.mouseUp());
}

TEST(MouseEventMonitor, GoesOnWithoutAPointerToWatch)
{
    struct Unwatchable : FakePointer {
        void start(std::function<void(const Sample &)>) override
        {
            throw LocalizedError(u"não deu"_qs);
        }
    } pointer;
    MouseEventMonitor monitor(pointer);
    EXPECT_NO_THROW(monitor.start([](const MouseEventMonitor::Event &) { FAIL(); }));
}

} // namespace
} // namespace velmo
