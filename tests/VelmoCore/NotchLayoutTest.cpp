#include "VelmoCore/Notch/NotchLayout.h"

#include "tests/support/Printers.h"

#include <gtest/gtest.h>

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

Context with(Context context, auto change)
{
    change(context);
    return context;
}

struct ShapeCase {
    const char *name;
    NotchPresentation presentation;
    Context context;
    NotchShapeSpec shape;
};

void expectShapes(std::initializer_list<ShapeCase> cases)
{
    for (const auto &[name, presentation, context, shape] : cases)
        EXPECT_EQ(NotchLayout::shape(presentation, context), shape) << name;
}

TEST(NotchLayout, ShapesEachPresentation)
{
    const Context wide = onScreen(1728, {200, 32});
    const Context broad = onScreen(1728, {400, 32});
    const Context compact = with(wide, [](auto &c) { c.panelSize = PanelSize::compact; });
    const Context large = with(wide, [](auto &c) { c.panelSize = PanelSize::large; });
    const auto strip = [](auto &c) { c.hasContextStrip = true; };
    expectShapes({
        {"compact", expanded, compact, {{1040, 188}, 12, 28}},
        {"regular", expanded, wide, {{1160, 204}, 12, 28}},
        {"large", expanded, large, {{1280, 224}, 12, 28}},
        {"narrow module", expanded, wide.withExpandedContentWidth(300), {{680, 204}, 12, 28}},
        {"module", expanded, wide.withExpandedContentWidth(700.5), {{701, 204}, 12, 28}},
        {"wide module", expanded, wide.withExpandedContentWidth(3000), {{1160, 204}, 12, 28}},
        {"preview", preview, wide, {{430, 86}, 10, 22}},
        {"preview, small notch", preview, onScreen(1728, {112, 32}), {{420, 86}, 10, 22}},
        {"strip", preview, with(wide, strip), {{980, 86}, 10, 22}},
        {"strip, small notch",
         preview,
         with(onScreen(1728, {112, 32}), strip),
         {{960, 86}, 10, 22}},
        {"drop target", dropTarget, large.withExpandedContentWidth(700), {{1280, 224}, 12, 28}},
        {"result, compact", dropResult, compact, {{1000, 210}, 12, 30}},
        {"result, regular", dropResult, wide, {{1120, 210}, 12, 30}},
        {"result, large", dropResult, large, {{1240, 210}, 12, 30}},
        {"module over a broad notch",
         expanded,
         broad.withExpandedContentWidth(0),
         {{880, 204}, 12, 28}},
    });
}

TEST(NotchLayout, ShowsTheMostUrgentThingOfACollapsedPanel)
{
    Context context = onScreen(1728, {200, 32});
    const Size broad{460, 32};
    const auto expectBoth = [&](const char *name, NotchShapeSpec shape, double broadWidth) {
        Context wider = context;
        wider.metrics.notchSize = broad;
        NotchShapeSpec widerShape = shape;
        widerShape.coreSize.width = broadWidth;
        expectShapes({{name, collapsed, context, shape}, {name, collapsed, wider, widerShape}});
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

    Context slim = onScreen(1728, {220, 32});
    slim.hasHUD = true;
    EXPECT_EQ(NotchLayout::shape(collapsed, slim).coreSize.width, 500);
    slim.metrics.notchSize.width = 221;
    EXPECT_EQ(NotchLayout::shape(collapsed, slim).coreSize.width, 501);
}

TEST(NotchLayout, StaysOnANarrowScreen)
{
    Context context = onScreen(800, {190.5, 24}, false);
    context.hasContextStrip = true;
    for (const PanelSize size : {PanelSize::compact, PanelSize::regular, PanelSize::large}) {
        context.panelSize = size;
        for (const NotchPresentation presentation : {preview, expanded, dropTarget, dropResult})
            EXPECT_EQ(NotchLayout::shape(presentation, context).coreSize.width, 748);
    }
    EXPECT_EQ(NotchLayout::shape(expanded, onScreen(180, {190.5, 24})).coreSize.width, 191)
        << "never narrower than the notch";
}

TEST(NotchLayout, GrowsTowardTheSideThatHasContent)
{
    struct Case {
        CollapsedSides sides;
        double width, offset;
    };
    // On a screen 1000 wide a notch of 200 leaves (948 - 200) / 2 = 374 on either side.
    for (const auto &[sides, width, offset] :
         {Case{{0, 90}, 290, 45}, Case{{90, 0}, 290, -45}, Case{{75, 50}, 325, -13},
          Case{{500, 100}, 674, -137}, Case{{500, 900}, 948, 0}}) {
        Context context = onScreen(1000, {200, 32});
        context.collapsedSides = sides;
        const NotchShapeSpec shape = NotchLayout::shape(collapsed, context);
        EXPECT_EQ(shape.coreSize.width, width) << testing::PrintToString(sides);
        EXPECT_EQ(shape.horizontalOffset, offset) << testing::PrintToString(sides);
    }
}

TEST(NotchLayout, HidesOnlyAnIdlePanelWithoutACutout)
{
    const Context hidden = with(onScreen(1920, {190, 30}, false),
                                [](auto &c) { c.nonNotchStyle = NonNotchStyle::hidden; });
    expectShapes({
        {"idle", collapsed, hidden, {{190, 30}, 6, 12, false}},
        {"thin bar", collapsed, onScreen(1920, {190, 20}, false), {{190, 20}, 6, 10}},
        {"cut-out",
         collapsed,
         with(hidden, [](auto &c) { c.metrics.hasHardwareNotch = true; }),
         {{190, 30}, 6, 10}},
        {"activity",
         collapsed,
         with(hidden, [](auto &c) { c.hasLiveActivity = true; }),
         {{270, 30}, 6, 12}},
        {"sides",
         collapsed,
         with(hidden,
              [](auto &c) {
                  c.collapsedSides = CollapsedSides{0, 9};
              }),
         {{199, 30}, 6, 12, true, 5}},
        {"feedback",
         collapsed,
         with(hidden, [](auto &c) { c.hasFeedback = true; }),
         {{300, 64}, 8, 18}},
    });
    EXPECT_EQ(NotchLayout::hoverZone(collapsed, hidden), (Rect{865, 994, 190, 6}));
    EXPECT_TRUE(NotchLayout::shape(preview, hidden).isVisible);
}

TEST(NotchLayout, SurroundsTheShapeWithItsZones)
{
    const Context notched = onScreen(1728, {200, 32});
    const Context pill = onScreen(1728, {200, 32}, false);
    const Rect flat{758, 968, 212, 32};
    using namespace NotchLayout;
    EXPECT_EQ(hoverZone(collapsed, notched), flat.outset(4, 4, 6, 0));
    EXPECT_EQ(hoverZone(collapsed, pill), flat.outset(10, 10, 6, 0));
    EXPECT_EQ(hoverTriggerZone(collapsed, notched), flat.outset(4, 4, 6, 0));
    EXPECT_EQ(dropZone(collapsed, pill), flat.outset(80, 80, 70, 0));

    const Rect peek{639, 914, 450, 86};
    EXPECT_EQ(hoverZone(preview, notched), peek.outset(6));
    EXPECT_EQ(hoverTriggerZone(preview, notched), peek.outset(6));
    EXPECT_EQ(dropZone(preview, notched), peek.outset(80, 80, 70, 0));

    const Rect open{272, 796, 1184, 204};
    EXPECT_EQ(hoverZone(expanded, notched), open.outset(6));
    EXPECT_EQ(dropZone(expanded, notched), open.outset(20));
    EXPECT_EQ(dropZone(dropTarget, notched), open.outset(20));
}

TEST(NotchLayout, OpensOnlyOverTheNotchWhereButtonsAreBesideIt)
{
    Context context = onScreen(1728, {200, 32});
    context.collapsedSides = CollapsedSides{0, 120};
    using namespace NotchLayout;
    EXPECT_EQ(hoverZone(collapsed, context), (Rect{754, 962, 340, 38}));
    EXPECT_EQ(hoverTriggerZone(collapsed, context), (Rect{760, 962, 208, 38}));
    context.hasHUD = true;
    EXPECT_EQ(hoverTriggerZone(collapsed, context), (Rect{760, 910, 208, 90}));
    context.hasHUD = false;
    context.hasMailBanner = true;
    EXPECT_EQ(hoverTriggerZone(collapsed, context), (Rect{760, 962, 208, 38}));
    EXPECT_EQ(hoverTriggerZone(preview, context), hoverZone(preview, context));
    context.metrics.hasHardwareNotch = false;
    EXPECT_EQ(hoverTriggerZone(collapsed, context), hoverZone(collapsed, context));
}

TEST(NotchLayout, PlacesTheCanvasUnderTheTopEdge)
{
    Context context = onScreen(1728, {200, 32});
    EXPECT_EQ(NotchLayout::canvasSize(context), (Size{1728, 274}));
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
} // namespace velmo
