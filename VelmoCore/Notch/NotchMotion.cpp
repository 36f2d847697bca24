#include "VelmoCore/Notch/NotchMotion.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace velmo {
namespace {

using Sample = NotchMotions::Sample;

/// The way still to go as A·e^(r₁t) + B·e^(r₂t), or its limit A and B·t where the roots meet.
/// `ahead` and `velocity` are the state at t = 0 relative to the target; ω is in radians per
/// second.
Sample decay(double omega, double zeta, double ahead, double velocity, double t)
{
    if (zeta < 1) {
        const double frequency = omega * std::sqrt(1 - zeta * zeta);
        const double rate = zeta * omega;
        const double quadrature = (velocity + rate * ahead) / frequency;
        const double envelope = std::exp(-rate * t);
        const double cosine = std::cos(frequency * t);
        const double sine = std::sin(frequency * t);
        const double position = envelope * (ahead * cosine + quadrature * sine);
        return {position,
                envelope * frequency * (quadrature * cosine - ahead * sine) - rate * position};
    }
    if (zeta == 1) {
        const double slope = velocity + omega * ahead;
        const double envelope = std::exp(-omega * t);
        return {envelope * (ahead + slope * t), envelope * (slope - omega * (ahead + slope * t))};
    }
    const double spread = omega * std::sqrt(zeta * zeta - 1);
    const double slow = -zeta * omega + spread;
    const double fast = -zeta * omega - spread;
    const double slowShare = (velocity - fast * ahead) / (2 * spread);
    const double slowPart = slowShare * std::exp(slow * t);
    const double fastPart = (ahead - slowShare) * std::exp(fast * t);
    return {slowPart + fastPart, slow * slowPart + fast * fastPart};
}

} // namespace

Sample NotchMotions::sample(const NotchMotion::Spring &spring, double from, double velocity,
                            double to, Seconds elapsed)
{
    const double omega = 2 * std::numbers::pi / spring.response.count();
    Sample sample =
        decay(omega, spring.dampingFraction, from - to, velocity, std::max(0.0, elapsed.count()));
    sample.position += to;
    return sample;
}

Sample NotchMotions::sample(const NotchMotion::Ease &ease, double from, double to, Seconds elapsed)
{
    if (elapsed <= Seconds::zero())
        return {from, 0};
    if (elapsed >= ease.duration)
        return {to, 0};
    // The Bézier curve from (0, 0) to (1, 1) with the handles (0.42, 0) and (0.58, 1).
    constexpr double firstX = 0.42;
    constexpr double secondX = 0.58;
    const auto x = [](double s) {
        return 3 * firstX * s * (1 - s) * (1 - s) + 3 * secondX * s * s * (1 - s) + s * s * s;
    };
    const auto slopeX = [](double s) {
        return 3 * firstX * (1 - s) * (1 - s) + 6 * (secondX - firstX) * s * (1 - s) +
               3 * (1 - secondX) * s * s;
    };
    const double progress = elapsed / ease.duration;
    // x(s) is monotonic and its slope lies between 0.87 and 1.26, so Newton converges at once.
    double s = progress;
    for (int step = 0; step < 4; ++step)
        s -= (x(s) - progress) / slopeX(s);
    const double y = s * s * (3 - 2 * s);
    const double slopeY = 6 * s * (1 - s);
    return {std::lerp(from, to, y), (to - from) * slopeY / slopeX(s) / ease.duration.count()};
}

bool NotchMotions::isSettled(const Sample &sample, double to)
{
    return std::abs(sample.position - to) < 0.05 && std::abs(sample.velocity) < 1;
}

double NotchMotions::pace(AnimationSpeed speed)
{
    switch (speed) {
    case AnimationSpeed::relaxed:
        return 1.3;
    case AnimationSpeed::normal:
        return 1.0;
    case AnimationSpeed::fast:
        return 0.75;
    }
    return 1.0;
}

NotchMotion NotchMotions::transition(bool opening, bool animationsEnabled, bool reduceMotion,
                                     AnimationSpeed speed)
{
    if (!animationsEnabled)
        return {NotchMotion::None{}};
    const double factor = pace(speed);
    if (reduceMotion)
        return {NotchMotion::Ease{Seconds{0.16 * factor}}};
    return opening ? NotchMotion{NotchMotion::Spring{Seconds{0.5 * factor}, 0.7}}
                   : NotchMotion{NotchMotion::Spring{Seconds{0.32 * factor}, 0.95}};
}

NotchMotion NotchMotions::shapeChange(NotchPresentation presentation, Seconds sinceTransition,
                                      bool animationsEnabled, bool reduceMotion,
                                      AnimationSpeed speed)
{
    // While the panel is still on its way, the change has to join that movement.
    const bool isAtRest =
        presentation == NotchPresentation::collapsed && sinceTransition > Seconds{0.7};
    if (animationsEnabled && isAtRest)
        return {NotchMotion::Spring{Seconds{0.42}, 1}};
    return transition(true, animationsEnabled, reduceMotion, speed);
}

} // namespace velmo
