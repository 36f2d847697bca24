#pragma once

#include "VelmoCore/Foundation/Date.h"
#include "VelmoCore/Notch/NotchStateMachine.h"

#include <boost/describe.hpp>

#include <variant>

namespace velmo {

enum class AnimationSpeed { relaxed, normal, fast };
BOOST_DESCRIBE_ENUM(AnimationSpeed, relaxed, normal, fast)

/// How a shape moves to its new numbers.
struct NotchMotion {
    /// It is there at once.
    struct None {
        bool operator==(const None &) const = default;
    };
    /// A damped harmonic spring: `response` is the undamped period (above 0),
    /// `dampingFraction` 1 is critical.
    struct Spring {
        Seconds response{};
        double dampingFraction = 1;
        bool operator==(const Spring &) const = default;
    };
    /// Cubic ease-in-out, the form of reduced motion.
    struct Ease {
        Seconds duration{};
        bool operator==(const Ease &) const = default;
    };

    std::variant<None, Spring, Ease> value;

    bool operator==(const NotchMotion &) const = default;
};

/// One number on its way, as a function of the time since it set out.
namespace NotchMotions {

struct Sample {
    double position = 0;
    double velocity = 0; ///< per second
};

/// Where a spring is that left `from` with `velocity` toward `to`, `elapsed` ago (closed form).
Sample sample(const NotchMotion::Spring &spring, double from, double velocity, double to,
              Seconds elapsed);
Sample sample(const NotchMotion::Ease &ease, double from, double to, Seconds elapsed);

/// Whether what remains of the way can't be seen: below a twentieth of a point, and
/// slower than a point a second.
bool isSettled(const Sample &sample, double to);

/// What the user's choice of speed multiplies every duration with.
double pace(AnimationSpeed speed);

/// The motion of a change of presentation.
NotchMotion transition(bool opening, bool animationsEnabled, bool reduceMotion,
                       AnimationSpeed speed);

/// The motion of a shape that changes within its presentation: a banner comes, sides grow.
/// `sinceTransition` is the time since the presentation changed.
NotchMotion shapeChange(NotchPresentation presentation, Seconds sinceTransition,
                        bool animationsEnabled, bool reduceMotion, AnimationSpeed speed);

} // namespace NotchMotions
} // namespace velmo
