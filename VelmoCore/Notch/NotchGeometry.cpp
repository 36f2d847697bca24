#include "VelmoCore/Notch/NotchGeometry.h"

#include <algorithm>

namespace velmo {
namespace {

/// The width between the usable areas beside a cut-out, if it can be one: not a rounding error of
/// the areas, and not half the screen.
std::optional<double> cutoutWidth(const ScreenDescriptor &screen)
{
    if (screen.safeAreaTop <= 0 || !screen.auxiliaryTopLeftWidth || !screen.auxiliaryTopRightWidth)
        return std::nullopt;
    const double width =
        screen.frame.width - *screen.auxiliaryTopLeftWidth - *screen.auxiliaryTopRightWidth;
    if (width <= 40 || width >= screen.frame.width / 2)
        return std::nullopt;
    return width;
}

} // namespace

double ScreenDescriptor::menuBarHeight() const
{
    return std::max(0.0, frame.maxY() - visibleFrame.maxY());
}

bool ScreenDescriptor::hasHardwareNotch() const
{
    return cutoutWidth(*this).has_value();
}

NotchMetrics NotchGeometry::metrics(const ScreenDescriptor &screen)
{
    NotchMetrics metrics{
        .notchSize = {virtualNotchWidth, std::max(screen.menuBarHeight(), minimumBarHeight)},
        .centerX = screen.frame.midX(),
        .topY = screen.frame.maxY(),
        .screenFrame = screen.frame};
    if (const auto width = cutoutWidth(screen)) {
        metrics.hasHardwareNotch = true;
        metrics.notchSize = {*width, screen.safeAreaTop};
        metrics.centerX = screen.frame.minX() + *screen.auxiliaryTopLeftWidth + *width / 2;
    }
    return metrics;
}

} // namespace velmo
