#include "VelmoSystem/Input/FullscreenDetector.h"

#include "tests/support/FakeDisplays.h"
#include "tests/support/FakeWorkspace.h"
#include "tests/support/ManualScheduler.h"

#include <gtest/gtest.h>

namespace velmo {
namespace {

constexpr Rect left{0, -1080, 1920, 1080};
constexpr Rect right{1920, -1440, 2560, 1440};

Workspace::Window fullscreen(const Rect &frame)
{
    return {.id = 7, .frame = frame, .isFullscreen = true};
}

class FullscreenDetectorTest : public testing::Test {
protected:
    FullscreenDetectorTest() { detector.start(); }

    FakeWorkspace workspace;
    FakeDisplays displays{{{.displayID = 1, .frame = left}, {.displayID = 2, .frame = right}}};
    ManualScheduler scheduler;
    FullscreenDetector detector{workspace, displays, scheduler};
};

TEST_F(FullscreenDetectorTest, CountsAChangeOnceItHasStoodForAWhile)
{
    const Workspace::Window other{.id = 8, .frame = {10, -300, 200, 100}};
    const struct {
        Seconds wait; ///< since the line before
        std::vector<Workspace::Window> windows;
        int changes; ///< reported so far
    } course[] = {
        {0s, {fullscreen(left)}, 0},
        {0.2s, {}, 0}, // a flicker
        {1s, {fullscreen(left)}, 0},
        {0.3s, {fullscreen(right)}, 0},         // starts again
        {0.34s, {fullscreen(right), other}, 0}, // stirs, but no screen changes
        {0.01s, {fullscreen(right), other}, 1},
        {1s, {}, 1},
        {0.35s, {}, 2},
    };
    int changes = 0;
    detector.onChange = [&] { ++changes; };
    for (const auto &[wait, windows, expected] : course) {
        scheduler.advance(wait);
        workspace.show(windows);
        EXPECT_EQ(changes, expected);
        EXPECT_EQ(detector.fullscreenDisplays(),
                  changes == 1 ? std::set<DisplayID>{2} : std::set<DisplayID>{});
    }
    EXPECT_EQ(scheduler.pendingCount(), 0U);
}

TEST_F(FullscreenDetectorTest, AsksForTheStateAndForTheWholeScreen)
{
    const struct {
        const char *name;
        Workspace::Window window;
        std::set<DisplayID> covered;
    } cases[] = {
        {"maximised only", {.id = 7, .frame = left}, {}},
        {"short by the tolerance", fullscreen({0, -1080 + 80, 1920 - 80, 1080 - 160}), {1}},
        {"short by more", fullscreen({0, -1080 + 81, 1920, 1080 - 81}), {}},
        {"over both screens", fullscreen({0, -1440, 4480, 1440}), {1, 2}},
    };
    for (const auto &[name, window, covered] : cases) {
        workspace.show({window});
        scheduler.advance(1s);
        EXPECT_EQ(detector.fullscreenDisplays(), covered) << name;
    }
    displays.arrange({{.displayID = 3, .frame = left}});
    scheduler.advance(1s);
    EXPECT_EQ(detector.fullscreenDisplays(), std::set<DisplayID>{3}) << "the screens changed";
}

} // namespace
} // namespace velmo
