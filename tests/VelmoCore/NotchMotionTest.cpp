#include "VelmoCore/Notch/NotchMotion.h"

#include <gtest/gtest.h>

#include <array>
#include <numbers>

namespace velmo {
namespace {

TEST(NotchMotion, MovesASpringByItsDifferentialEquation)
{
    const double to = 204;
    const double h = 1e-5;
    for (const double damping : {0.0, 0.7, 1 - 1e-7, 1.0, 1 + 1e-7, 1.6}) {
        const NotchMotion::Spring spring{Seconds{0.42}, damping};
        const double omega = 2 * std::numbers::pi / 0.42;
        for (const double velocity : {0.0, 900.0, -900.0}) {
            const auto at = [&](double t) {
                return NotchMotions::sample(spring, 32, velocity, to, Seconds{t});
            };
            EXPECT_NEAR(at(0).position, 32, 1e-9);
            EXPECT_NEAR(at(0).velocity, velocity, 1e-4);
            for (const double t : {0.001, 0.03, 0.2, 0.8}) {
                const auto [before, now, after] = std::array{at(t - h), at(t), at(t + h)};
                const double acceleration =
                    -omega * omega * (now.position - to) - 2 * damping * omega * now.velocity;
                EXPECT_NEAR((after.position - before.position) / (2 * h), now.velocity, 0.01)
                    << damping << ' ' << velocity << ' ' << t;
                EXPECT_NEAR((after.velocity - before.velocity) / (2 * h), acceleration, 0.1)
                    << damping << ' ' << velocity << ' ' << t;
            }
        }
    }
}

TEST(NotchMotion, SettlesOnlyWhenNearAndSlow)
{
    EXPECT_FALSE(NotchMotions::isSettled({204, 300}, 204)) << "passing through";
    EXPECT_FALSE(NotchMotions::isSettled({207, 0}, 204)) << "turning at the overshoot";
    EXPECT_TRUE(NotchMotions::isSettled({204.01, -0.2}, 204));
}

TEST(NotchMotion, EasesInAndOut)
{
    const NotchMotion::Ease ease{Seconds{0.2}};
    const auto at = [&](double t) { return NotchMotions::sample(ease, 100, 200, Seconds{t}); };
    // Two points of the curve, worked out by hand.
    EXPECT_NEAR(at(0.2 * 0.274375).position, 115.625, 1e-9);
    EXPECT_NEAR(at(0.1).position, 150, 1e-9);
    EXPECT_EQ(at(-1).position, 100);
    EXPECT_EQ(at(0.2).position, 200);
    EXPECT_EQ(at(5).velocity, 0);
    for (const double elapsed : {0.001, 0.05, 0.1, 0.199}) {
        const double slope = (at(elapsed + 1e-6).position - at(elapsed - 1e-6).position) / 2e-6;
        EXPECT_NEAR(at(elapsed).velocity, slope, 0.01) << elapsed;
    }
}

} // namespace
} // namespace velmo
