#pragma once

#include "VelmoCore/Notch/NotchGeometry.h"

#include <span>
#include <variant>
#include <vector>

namespace velmo {

/// On which screens the user wants a panel.
struct DisplayMode {
    /// The built-in screen with a cut-out, else any with one, else the primary one.
    struct Automatic {
        static constexpr const char *caseName = "automatic";
        bool operator==(const Automatic &) const = default;
    };
    struct Primary {
        static constexpr const char *caseName = "primary";
        bool operator==(const Primary &) const = default;
    };
    struct All {
        static constexpr const char *caseName = "all";
        bool operator==(const All &) const = default;
    };
    /// The screen with this id; as `Automatic` while it isn't there.
    struct Specific {
        static constexpr const char *caseName = "specific";
        DisplayID displayID = 0;
        QString name;
        bool operator==(const Specific &) const = default;
    };

    std::variant<Automatic, Primary, All, Specific> value;

    bool operator==(const DisplayMode &) const = default;
};
BOOST_DESCRIBE_STRUCT(DisplayMode::Automatic, (), ())
BOOST_DESCRIBE_STRUCT(DisplayMode::Primary, (), ())
BOOST_DESCRIBE_STRUCT(DisplayMode::All, (), ())
BOOST_DESCRIBE_STRUCT(DisplayMode::Specific, (), (displayID, name))

namespace DisplaySelection {

/// The ids of the screens that get a panel, in the order of `screens`.
std::vector<DisplayID> targets(const DisplayMode &mode, std::span<const ScreenDescriptor> screens);

} // namespace DisplaySelection
} // namespace velmo
