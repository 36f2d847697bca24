#include "VelmoCore/Notch/DisplaySelection.h"

#include "tests/support/Printers.h"

#include <gtest/gtest.h>

namespace velmo {
namespace {

ScreenDescriptor plain(DisplayID id, bool isPrimary = false, bool isBuiltIn = false)
{
    return {.displayID = id,
            .frame = {0, 0, 1920, 1080},
            .isBuiltIn = isBuiltIn,
            .isPrimary = isPrimary};
}

ScreenDescriptor notched(DisplayID id, bool isBuiltIn = false)
{
    ScreenDescriptor screen = plain(id, false, isBuiltIn);
    screen.safeAreaTop = 32;
    screen.auxiliaryTopLeftWidth = screen.auxiliaryTopRightWidth = 860;
    return screen;
}

TEST(DisplaySelection, FollowsTheChosenMode)
{
    const DisplayMode automatic;
    const std::vector mixed = {plain(3), notched(1, true), plain(2, true)};
    struct Case {
        DisplayMode mode;
        std::vector<ScreenDescriptor> screens;
        std::vector<DisplayID> targets;
    };
    for (const auto &[mode, screens, targets] : {
             Case{automatic, {plain(1, true), notched(2), notched(3, true)}, {3}},
             Case{automatic, {plain(1, true), plain(2, false, true), notched(3), notched(4)}, {3}},
             Case{automatic, {plain(1, false, true), plain(2, true)}, {2}},
             Case{automatic, {plain(7), plain(8)}, {7}},
             Case{automatic, {}, {}},
             Case{{DisplayMode::All{}}, mixed, {3, 1, 2}},
             Case{{DisplayMode::Primary{}}, mixed, {2}},
             Case{{DisplayMode::Primary{}}, {}, {}},
             Case{{DisplayMode::Specific{3, {}}}, mixed, {3}},
             Case{{DisplayMode::Specific{9, "away"}}, mixed, {1}},
             Case{{DisplayMode::Specific{9, "away"}}, {}, {}},
         })
        EXPECT_EQ(DisplaySelection::targets(mode, screens), targets)
            << testing::PrintToString(mode) << testing::PrintToString(screens);
}

} // namespace
} // namespace velmo
