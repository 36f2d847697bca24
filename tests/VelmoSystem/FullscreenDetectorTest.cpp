#include "VelmoSystem/Input/FullscreenDetector.h"

#include "tests/support/FakeDisplays.h"
#include "tests/support/FakeWorkspace.h"
#include "tests/support/ManualScheduler.h"

#include <gtest/gtest.h>

namespace velmo {
namespace {

class FullscreenDetectorTest : public testing::Test {
protected:
    FullscreenDetectorTest()
    {
        detector.onChange = [this] { ++changes; };
        detector.start();
    }

    static Workspace::Window fullscreen(const Rect &frame)
    {
        return {.id = 7, .frame = frame, .isFullscreen = true};
    }

    static constexpr Rect left{0, -1080, 1920, 1080};
    static constexpr Rect right{1920, -1440, 2560, 1440};

    FakeWorkspace workspace;
    FakeDisplays displays{{{.displayID = 1, .frame = left}, {.displayID = 2, .frame = right}}};
    ManualScheduler scheduler;
    FullscreenDetector detector{workspace, displays, scheduler};
    int changes = 0;
};

TEST_F(FullscreenDetectorTest, CountsAChangeWhenASecondLookConfirmsIt)
{
    workspace.show({fullscreen(left)});
    scheduler.advance(0.34s);
    EXPECT_EQ(changes, 0);
    scheduler.advance(0.01s);
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(detector.fullscreenDisplays(), std::set<DisplayID>{1});

    workspace.show({});
    scheduler.advance(0.35s);
    EXPECT_EQ(changes, 2);
    EXPECT_TRUE(detector.fullscreenDisplays().empty());
    EXPECT_EQ(scheduler.pendingCount(), 0U);
}

TEST_F(FullscreenDetectorTest, ForgetsAFlicker)
{
    workspace.show({fullscreen(left)});
    scheduler.advance(0.2s);
    workspace.show({});
    scheduler.advance(1s);
    EXPECT_EQ(changes, 0);
}

TEST_F(FullscreenDetectorTest, StartsAnewWhenTheSecondLookDiffersFromTheFirst)
{
    workspace.show({fullscreen(left)});
    scheduler.advance(0.3s);
    workspace.show({fullscreen(right)});
    scheduler.advance(0.3s);
    EXPECT_EQ(changes, 0);
    scheduler.advance(0.05s);
    EXPECT_EQ(detector.fullscreenDisplays(), std::set<DisplayID>{2});
    EXPECT_EQ(changes, 1);
}

TEST_F(FullscreenDetectorTest, ConfirmsInTimeWhileOtherWindowsStir)
{
    const Workspace::Window other{.id = 8, .frame = {10, -300, 200, 100}};
    workspace.show({fullscreen(left)});
    for (int stir = 0; stir < 4; ++stir) {
        scheduler.advance(0.1s);
        workspace.show({fullscreen(left), other});
    }
    EXPECT_EQ(changes, 1);
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
}

TEST_F(FullscreenDetectorTest, LooksAgainWhenTheScreensChange)
{
    workspace.show({fullscreen({0, -1080, 1280, 720})});
    scheduler.advance(1s);
    displays.arrange({{.displayID = 3, .frame = {0, -1080, 1280, 720}}});
    scheduler.advance(1s);
    EXPECT_EQ(detector.fullscreenDisplays(), std::set<DisplayID>{3});
}

} // namespace
} // namespace velmo
