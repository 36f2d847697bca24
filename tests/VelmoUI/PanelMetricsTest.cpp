#include "VelmoUI/Design/PanelMetrics.h"

#include <gtest/gtest.h>

namespace velmo {
namespace {

TEST(PanelMetrics, AddsSpacingBetweenTheItemsOfARow)
{
    EXPECT_EQ(PanelMetrics::row(-1, 50), 0);
    EXPECT_EQ(PanelMetrics::row(4, 50, 8), 224);
}

TEST(PanelMetrics, SharesTheAvailableWidthWithinTheLimits)
{
    EXPECT_EQ(PanelMetrics::fill(3, 502, 80, 400), 160) << "whole points, so the row always fits";
    EXPECT_EQ(PanelMetrics::fill(10, 500, 80, 400), 80);
    EXPECT_EQ(PanelMetrics::fill(1, 500, 80, 400), 400);
    EXPECT_EQ(PanelMetrics::fill(0, 500, 80.5, 400), 80.5) << "nothing to share";
    EXPECT_EQ(PanelMetrics::fill(3, -20, 80.5, 400), 80.5);
}

} // namespace
} // namespace velmo
