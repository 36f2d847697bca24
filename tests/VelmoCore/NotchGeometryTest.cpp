#include "VelmoCore/Notch/NotchGeometry.h"

#include "tests/support/Printers.h"

#include <gtest/gtest.h>

namespace velmo {
namespace {

ScreenDescriptor laptop(double left, double right)
{
    return {.frame = {100, 50, 1512, 982},
            .visibleFrame = {100, 50, 1512, 945},
            .safeAreaTop = 32,
            .auxiliaryTopLeftWidth = left,
            .auxiliaryTopRightWidth = right};
}

TEST(NotchGeometry, FindsACutoutBetweenTheUsableAreas)
{
    const NotchMetrics centred = NotchGeometry::metrics(laptop(700, 700));
    EXPECT_EQ(centred, (NotchMetrics{.hasHardwareNotch = true,
                                     .notchSize = {112, 32},
                                     .centerX = 856,
                                     .topY = 1032,
                                     .screenFrame = {100, 50, 1512, 982}}));

    EXPECT_EQ(NotchGeometry::metrics(laptop(600, 800)).centerX, 756);
}

TEST(NotchGeometry, TakesNoImplausibleCutout)
{
    ScreenDescriptor noSafeArea = laptop(700, 700);
    noSafeArea.safeAreaTop = 0;
    ScreenDescriptor noLeftArea = laptop(700, 700);
    noLeftArea.auxiliaryTopLeftWidth.reset();
    ScreenDescriptor noRightArea = laptop(700, 700);
    noRightArea.auxiliaryTopRightWidth.reset();

    for (const ScreenDescriptor &screen :
         {noSafeArea, noLeftArea, noRightArea, laptop(736, 736), laptop(378, 378)}) {
        EXPECT_FALSE(screen.hasHardwareNotch());
        EXPECT_EQ(NotchGeometry::metrics(screen), (NotchMetrics{.hasHardwareNotch = false,
                                                                .notchSize = {190, 37},
                                                                .centerX = 856,
                                                                .topY = 1032,
                                                                .screenFrame = screen.frame}))
            << testing::PrintToString(screen);
    }
    EXPECT_TRUE(laptop(735, 736).hasHardwareNotch());
    EXPECT_TRUE(laptop(378, 379).hasHardwareNotch());
}

TEST(NotchGeometry, GivesAScreenWithoutABarTheLeastHeight)
{
    ScreenDescriptor screen{.frame = {0, 0, 1920, 1080}, .visibleFrame = {0, 0, 1920, 1080}};
    EXPECT_EQ(NotchGeometry::metrics(screen).notchSize, (Size{190, 24}));

    screen.visibleFrame.height = 1200;
    EXPECT_EQ(screen.menuBarHeight(), 0);
}

} // namespace
} // namespace velmo
