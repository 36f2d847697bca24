#pragma once

#include <boost/describe.hpp>

namespace velmo {

enum class FullscreenBehavior { hide, keepVisible };
BOOST_DESCRIBE_ENUM(FullscreenBehavior, hide, keepVisible)

enum class ThemePreference { system, light, dark };
BOOST_DESCRIBE_ENUM(ThemePreference, system, light, dark)

enum class AccentChoice { silver, yellow, orange, pink, purple, blue, green };
BOOST_DESCRIBE_ENUM(AccentChoice, silver, yellow, orange, pink, purple, blue, green)

enum class VolumeHUDStyle { bars, wheel };
BOOST_DESCRIBE_ENUM(VolumeHUDStyle, bars, wheel)

enum class ScreenshotFileFormat { png, jpg, heic };
BOOST_DESCRIBE_ENUM(ScreenshotFileFormat, png, jpg, heic)

/// On which sides of the notch the tools of the application in front stand.
enum class SmartNotchSides { right, both };
BOOST_DESCRIBE_ENUM(SmartNotchSides, right, both)

} // namespace velmo
