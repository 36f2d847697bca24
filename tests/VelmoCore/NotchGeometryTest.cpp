#include "VelmoCore/Notch/NotchGeometry.h"

#include "tests/support/Printers.h"

#include <gtest/gtest.h>

namespace velmo {
namespace {

ScreenDescriptor laptop(std::optional<double> left, std::optional<double> right, double safeArea)
{
    return {.frame = {100, 50, 1512, 982},
            .visibleFrame = {100, 50, 1512, 945},
            .safeAreaTop = safeArea,
            .auxiliaryTopLeftWidth = left,
            .auxiliaryTopRightWidth = right};
}

TEST(NotchGeometry, FindsAPlausibleCutoutBetweenTheUsableAreas)
{
    struct Case {
        ScreenDescriptor screen;
        bool hasNotch;
        Size size;
        double centerX;
    };
    for (const auto &[screen, hasNotch, size, centerX] : {
             Case{laptop(700, 700, 32), true, {112, 32}, 856},
             Case{laptop(600, 800, 32), true, {112, 32}, 756},
             Case{laptop(735, 736, 32), true, {41, 32}, 855.5},
             Case{laptop(378, 379, 32), true, {755, 32}, 855.5},
             Case{laptop(736, 736, 32), false, {190, 37}, 856},
             Case{laptop(378, 378, 32), false, {190, 37}, 856},
             Case{laptop(700, 700, 0), false, {190, 37}, 856},
             Case{laptop({}, 700, 32), false, {190, 37}, 856},
             Case{laptop(700, {}, 32), false, {190, 37}, 856},
         })
        EXPECT_EQ(NotchGeometry::metrics(screen),
                  (NotchMetrics{hasNotch, size, centerX, 1032, screen.frame}))
            << testing::PrintToString(screen);
}

TEST(NotchGeometry, GivesAScreenWithoutABarTheLeastHeight)
{
    for (const double visibleHeight : {1080, 1200})
        EXPECT_EQ(NotchGeometry::metrics(
                      {.frame = {0, 0, 1920, 1080}, .visibleFrame = {0, 0, 1920, visibleHeight}})
                      .notchSize,
                  (Size{190, 24}));
}

} // namespace
} // namespace velmo
