#pragma once

#include "VelmoCore/Foundation/Geometry.h"

#include <QString>

#include <boost/describe.hpp>

#include <cstdint>
#include <optional>

namespace velmo {

using DisplayID = std::uint32_t;

/// One screen, in points with y upward.
struct ScreenDescriptor {
    DisplayID displayID = 0;
    QString name;
    Rect frame;
    Rect visibleFrame;      ///< without panels and bars of the desktop
    double safeAreaTop = 0; ///< height of a cut-out at the top edge, 0 for none
    std::optional<double> auxiliaryTopLeftWidth; ///< usable width left of the cut-out
    std::optional<double> auxiliaryTopRightWidth;
    bool isBuiltIn = false;
    bool isPrimary = false;

    double menuBarHeight() const;
    bool hasHardwareNotch() const;

    bool operator==(const ScreenDescriptor &) const = default;
};
BOOST_DESCRIBE_STRUCT(ScreenDescriptor, (),
                      (displayID, name, frame, visibleFrame, safeAreaTop, auxiliaryTopLeftWidth,
                       auxiliaryTopRightWidth, isBuiltIn, isPrimary))

/// Where a screen's notch is, be it a cut-out or the place that stands for one.
struct NotchMetrics {
    bool hasHardwareNotch = false;
    Size notchSize;
    double centerX = 0;
    double topY = 0;
    Rect screenFrame;

    bool operator==(const NotchMetrics &) const = default;
};
BOOST_DESCRIBE_STRUCT(NotchMetrics, (), (hasHardwareNotch, notchSize, centerX, topY, screenFrame))

namespace NotchGeometry {

inline constexpr double virtualNotchWidth = 190;
inline constexpr double minimumBarHeight = 24;

NotchMetrics metrics(const ScreenDescriptor &screen);

} // namespace NotchGeometry
} // namespace velmo
