#pragma once

#include <QString>

#include <cmath>
#include <optional>

namespace velmo {

/// The range in which a numeric setting is offered. A file may hold any number.
struct Bounds {
    double minimum = 0;
    double maximum = 0;
    double step = 0;

    /// The nearest multiple of the step, as its decimal text reads: 0.18 is no 0.1799999….
    double snap(double value) const
    {
        const double steps = std::round(value / step);
        return step < 1 ? steps / std::round(1 / step) : steps * step;
    }

    bool operator==(const Bounds &) const = default;
};

namespace SettingsBounds {

inline constexpr Bounds hoverDelay{0, 1, 0.02};
inline constexpr Bounds closeDelay{0.1, 3, 0.1};
inline constexpr Bounds activityRetentionDays{1, 30, 1};
inline constexpr Bounds focusMinutes{5, 120, 5};
inline constexpr Bounds breakMinutes{1, 60, 1};
inline constexpr Bounds cyclesBeforeLongBreak{1, 8, 1};

/// By the key's name; nothing for a key that isn't a number.
std::optional<Bounds> of(const QString &key);

} // namespace SettingsBounds
} // namespace velmo
