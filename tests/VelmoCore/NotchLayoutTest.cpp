#include "VelmoCore/Notch/NotchLayout.h"

#include "tests/support/Printers.h"

#include <gtest/gtest.h>

#include <numbers>
#include <random>

namespace velmo {
namespace {

using enum NotchPresentation;
using Context = NotchLayoutContext;

/// A screen whose notch is in the middle of its top edge, at (width / 2, 1000).
Context onScreen(double width, Size notch, bool hasHardwareNotch = true)
{
    return {.metrics = {.hasHardwareNotch = hasHardwareNotch,
                        .notchSize = notch,
                        .centerX = width / 2,
                        .topY = 1000,
                        .screenFrame = {0, 0, width, 1000}}};
}

TEST(NotchLayout, ShapesEachPresentation)
{
    using enum PanelSize;
    const Context wide = onScreen(1728, {200, 32});
    const Context small = onScreen(1728, {112, 32});
    const Context broad = onScreen(1728, {400, 32});
    const struct {
        NotchPresentation presentation;
        Context context;
        PanelSize size;
        bool hasStrip;
        NotchShapeSpec shape;
    } cases[] = {
        {expanded, wide, compact, false, {{1040, 188}, 12, 28}},
        {expanded, wide, regular, false, {{1160, 204}, 12, 28}},
        {expanded, onScreen(800, {200, 32}), regular, false, {{748, 204}, 12, 28}},
        {expanded, onScreen(180, {190.5, 32}), regular, false, {{191, 204}, 12, 28}},
        {expanded, wide, large, false, {{1280, 224}, 12, 28}},
        {preview, wide, regular, false, {{430, 86}, 10, 22}},
        {preview, small, regular, false, {{420, 86}, 10, 22}},
        {preview, wide, regular, true, {{980, 86}, 10, 22}},
        {preview, small, regular, true, {{960, 86}, 10, 22}},
        {dropResult, wide, compact, false, {{1000, 210}, 12, 30}},
        {dropResult, wide, regular, false, {{1120, 210}, 12, 30}},
        {dropResult, wide, large, false, {{1240, 210}, 12, 30}},
        // What a module asks for, between the notch with its bars and the panel's full width.
        {expanded, wide.withExpandedContentWidth(300), compact, false, {{680, 188}, 12, 28}},
        {expanded, wide.withExpandedContentWidth(700.5), compact, false, {{701, 188}, 12, 28}},
        {expanded, wide.withExpandedContentWidth(3000), compact, false, {{1040, 188}, 12, 28}},
        {expanded, broad.withExpandedContentWidth(0), compact, false, {{880, 188}, 12, 28}},
        {dropTarget, wide.withExpandedContentWidth(700), compact, false, {{1040, 188}, 12, 28}},
    };
    for (auto [presentation, context, size, hasStrip, shape] : cases) {
        context.panelSize = size;
        context.hasContextStrip = hasStrip;
        EXPECT_EQ(NotchLayout::shape(presentation, context), shape)
            << testing::PrintToString(presentation) << testing::PrintToString(context);
    }
}

TEST(NotchLayout, ShowsTheMostUrgentThingOfACollapsedPanel)
{
    Context context = onScreen(1728, {200, 32});
    const auto expectBoth = [&](const char *shown, const NotchShapeSpec &shape, double broadWidth) {
        EXPECT_EQ(NotchLayout::shape(collapsed, context), shape) << shown;
        Context broad = context;
        broad.metrics.notchSize.width = 460;
        EXPECT_EQ(NotchLayout::shape(collapsed, broad).coreSize.width, broadWidth) << shown;
    };
    expectBoth("plain", {{200, 32}, 6, 10}, 460);
    context.hasLiveActivity = true;
    expectBoth("live activity", {{280, 32}, 6, 10}, 540);
    context.collapsedSides = CollapsedSides{0, 0};
    expectBoth("empty sides", {{280, 32}, 6, 10}, 540);
    context.collapsedSides = CollapsedSides{30, 70};
    expectBoth("sides", {{300, 32}, 6, 10, true, 20}, 560);
    context.hasFeedback = true;
    expectBoth("feedback", {{300, 66}, 8, 18}, 540);
    context.hasMailBanner = true;
    expectBoth("mail banner", {{520, 158}, 10, 26}, 540);
    context.hasHUD = true;
    expectBoth("HUD", {{500, 84}, 8, 20}, 740);
    context.hasLargeHUD = true;
    expectBoth("large HUD", {{420, 198}, 10, 30}, 540);
}

TEST(NotchLayout, GrowsTowardTheSideThatHasContent)
{
    // On a screen 1000 wide a notch of 200 leaves (948 - 200) / 2 = 374 on either side.
    const std::pair<CollapsedSides, NotchShapeSpec> cases[] = {
        {{0, 90}, {{290, 32}, 6, 10, true, 45}},   {{90, 0}, {{290, 32}, 6, 10, true, -45}},
        {{75, 50}, {{325, 32}, 6, 10, true, -13}}, {{500, 100}, {{674, 32}, 6, 10, true, -137}},
        {{500, 900}, {{948, 32}, 6, 10, true, 0}},
    };
    Context context = onScreen(1000, {200, 32});
    for (const auto &[sides, shape] : cases) {
        context.collapsedSides = sides;
        EXPECT_EQ(NotchLayout::shape(collapsed, context), shape) << testing::PrintToString(sides);
    }
}

TEST(NotchLayout, HidesOnlyAnIdlePanelWithoutACutout)
{
    Context context = onScreen(1920, {190, 30}, false);
    EXPECT_EQ(NotchLayout::shape(collapsed, context), (NotchShapeSpec{{190, 30}, 6, 12, true}));
    context.metrics.notchSize.height = 20;
    EXPECT_EQ(NotchLayout::shape(collapsed, context), (NotchShapeSpec{{190, 20}, 6, 10, true}));

    context.nonNotchStyle = NonNotchStyle::hidden;
    EXPECT_FALSE(NotchLayout::shape(collapsed, context).isVisible);
    EXPECT_EQ(NotchLayout::hoverZone(collapsed, context), (Rect{865, 994, 190, 6}));
    EXPECT_TRUE(NotchLayout::shape(preview, context).isVisible);
    Context busy = context;
    busy.hasLiveActivity = true;
    context.metrics.hasHardwareNotch = true;
    for (const Context &visible : {busy, context})
        EXPECT_TRUE(NotchLayout::shape(collapsed, visible).isVisible);
}

TEST(NotchLayout, SurroundsTheShapeWithItsZones)
{
    const Context notched = onScreen(1728, {200, 32});
    const Context pill = onScreen(1728, {200, 32}, false);
    const Rect flat{758, 968, 212, 32}, peek{639, 914, 450, 86}, open{272, 796, 1184, 204},
        result{292, 790, 1144, 210};
    using namespace NotchLayout;
    EXPECT_EQ(hoverZone(collapsed, notched), flat.outset(4, 4, 6, 0));
    EXPECT_EQ(hoverZone(collapsed, pill), flat.outset(10, 10, 6, 0));
    EXPECT_EQ(hoverZone(preview, notched), peek.outset(6));
    EXPECT_EQ(hoverTriggerZone(preview, notched), peek.outset(6));
    EXPECT_EQ(dropZone(collapsed, pill), flat.outset(80, 80, 70, 0));
    EXPECT_EQ(dropZone(preview, notched), peek.outset(80, 80, 70, 0));
    for (const auto &[presentation, frame] :
         {std::pair(expanded, open), {dropTarget, open}, {dropResult, result}})
        EXPECT_EQ(dropZone(presentation, notched), frame.outset(20));
}

TEST(NotchLayout, OpensOnlyOverTheNotchWhereButtonsAreBesideIt)
{
    Context context = onScreen(1728, {200, 32});
    using namespace NotchLayout;
    EXPECT_EQ(hoverTriggerZone(collapsed, context), hoverZone(collapsed, context));
    context.collapsedSides = CollapsedSides{0, 120};
    EXPECT_EQ(hoverZone(collapsed, context), (Rect{754, 962, 340, 38}));
    EXPECT_EQ(hoverTriggerZone(collapsed, context), (Rect{760, 962, 208, 38}));
    context.hasMailBanner = true;
    EXPECT_EQ(hoverTriggerZone(collapsed, context), (Rect{760, 962, 208, 38}));
    EXPECT_EQ(hoverTriggerZone(preview, context), hoverZone(preview, context));
    context.metrics.hasHardwareNotch = false;
    EXPECT_EQ(hoverTriggerZone(collapsed, context), (Rect{760, 962, 208, 38}))
        << "else a banner's buttons couldn't be reached";
    context.hasMailBanner = false;
    EXPECT_EQ(hoverTriggerZone(collapsed, context), hoverZone(collapsed, context));
}

TEST(NotchLayout, PlacesTheCanvasUnderTheTopEdge)
{
    Context context = onScreen(1728, {200, 32});
    context.panelSize = PanelSize::large;
    context.metrics.screenFrame = {-1728, 200, 1728, 1000};
    context.metrics.centerX = -900;
    context.metrics.topY = 1200;
    EXPECT_EQ(NotchLayout::canvasFrame(context), (Rect{-1728, 912, 1728, 288}));
}

/// Any state of a panel on a screen of its own, its notch not quite in the middle.
Context randomContext(std::mt19937 &random)
{
    const auto upTo = [&](int most) { return std::uniform_int_distribution{0, most}(random); };
    const auto flag = [&] { return upTo(1) == 1; };
    const double width = 640 + upTo(3000);
    Context context = onScreen(width, {41.0 + upTo(260), 24.0 + upTo(20)}, flag());
    context.metrics.screenFrame.x = upTo(4000) - 2000;
    context.metrics.centerX = context.metrics.screenFrame.midX() + upTo(30) - 15;
    context.panelSize = static_cast<PanelSize>(upTo(2));
    context.nonNotchStyle = static_cast<NonNotchStyle>(upTo(1));
    for (bool Context::*member :
         {&Context::hasLiveActivity, &Context::hasFeedback, &Context::hasHUD, &Context::hasLargeHUD,
          &Context::hasMailBanner, &Context::hasContextStrip})
        context.*member = upTo(3) == 0;
    if (flag())
        context.collapsedSides = CollapsedSides{upTo(2000) / 2.0, upTo(2000) / 2.0};
    if (flag())
        context.expandedContentWidth = upTo(2000);
    return context;
}

TEST(NotchLayout, HoldsEveryShapeInOneCanvasWhateverShows)
{
    std::mt19937 random(7);
    for (int round = 0; round < 3000; ++round) {
        const Context context = randomContext(random);
        Context idle{.metrics = context.metrics, .panelSize = context.panelSize};
        const Rect canvas = NotchLayout::canvasFrame(context);
        const Rect &screen = context.metrics.screenFrame;
        ASSERT_EQ(canvas, NotchLayout::canvasFrame(idle)) << testing::PrintToString(context);
        ASSERT_TRUE(canvas.minX() >= screen.minX() && canvas.maxX() <= screen.maxX());
        for (const NotchPresentation presentation : allNotchPresentations) {
            const NotchShapeSpec shape = NotchLayout::shape(presentation, context);
            const Rect frame = NotchLayout::shapeFrame(shape, context);
            ASSERT_TRUE(std::max(frame.minX(), screen.minX()) >= canvas.minX() &&
                        std::min(frame.maxX(), screen.maxX()) <= canvas.maxX() &&
                        frame.minY() - NotchLayout::shadowPadding >= canvas.minY() &&
                        frame.maxY() == canvas.maxY())
                << testing::PrintToString(presentation) << testing::PrintToString(context);
            ASSERT_LE(shape.coreSize.width, std::max(screen.width - 52, frame.width - 2 * 12));
        }
    }
}

} // namespace
TEST(NotchLayout, OutlinesTheShapeInRowsWithoutGaps)
{
    NotchLayoutContext context;
    context.metrics = NotchGeometry::metrics({.frame = {0, -982, 1512, 982}});
    const NotchShapeSpec spec{{1160, 196.4}, 12, 28};
    const auto rows = NotchLayout::outline(spec, context);
    const Rect frame = NotchLayout::shapeFrame(spec, context);

    double top = frame.maxY();
    double area = 0;
    for (const Rect &row : rows) {
        EXPECT_NEAR(row.maxY(), top, 1e-9);
        EXPECT_NEAR(row.midX(), frame.midX(), 1e-9);
        top = row.minY();
        area += row.width * row.height;
    }
    EXPECT_NEAR(top, frame.minY(), 1e-9);
    // Each of two ears adds what a quarter of a circle leaves of a square; each corner takes it.
    const double leftOver = 1 - std::numbers::pi / 4;
    EXPECT_NEAR(area, 1160 * 196.4 + 2 * leftOver * (12 * 12 - 28 * 28), 2);
    EXPECT_GT(rows.front().width, rows[1].width);
    EXPECT_LT(rows.back().width, 1160 - 28);
}

} // namespace velmo
