#include "VelmoCore/Notch/NotchLayout.h"

#include <algorithm>
#include <cmath>

namespace velmo {
namespace {

using enum NotchPresentation;

/// How far the pointer may miss an open panel, or a collapsed one's lower edge.
constexpr double hoverMargin = 6;

/// The widest body: its ears and a margin stay on the screen.
double maximumWidth(const NotchMetrics &metrics)
{
    return std::max(metrics.notchSize.width,
                    metrics.screenFrame.width - 2 * NotchLayout::screenMargin - 28);
}

/// A shape that reaches `below` points under the notch.
NotchShapeSpec hanging(const NotchMetrics &metrics, double width, double below, double topRadius,
                       double bottomRadius)
{
    return {.coreSize = {std::round(std::min(maximumWidth(metrics), width)),
                         metrics.notchSize.height + below},
            .topRadius = topRadius,
            .bottomRadius = bottomRadius};
}

bool hasSides(const NotchLayoutContext &context)
{
    return context.collapsedSides &&
           context.collapsedSides->left + context.collapsedSides->right > 0;
}

double expandedCoreWidth(const NotchLayoutContext &context)
{
    const double widest = NotchLayout::expandedWidth(context.panelSize);
    if (!context.expandedContentWidth)
        return widest;
    const double least = NotchLayout::minimumExpandedWidth(context.metrics.notchSize.width);
    return std::min(widest, std::max(*context.expandedContentWidth, least));
}

/// A collapsed panel with nothing under the notch: content beside it, or none.
NotchShapeSpec flatShape(const NotchLayoutContext &context)
{
    const NotchMetrics &metrics = context.metrics;
    const auto [w, h] = metrics.notchSize;
    const double bottomRadius = metrics.hasHardwareNotch ? 10 : std::min(h / 2, 12.0);
    if (hasSides(context)) {
        const double half = (maximumWidth(metrics) - w) / 2;
        const double left = std::min(context.collapsedSides->left, half);
        const double right = std::min(context.collapsedSides->right, half);
        NotchShapeSpec shape = hanging(metrics, w + left + right, 0, 6, bottomRadius);
        shape.horizontalOffset = std::round((right - left) / 2);
        return shape;
    }
    const double ears = context.hasLiveActivity ? 2 * NotchLayout::earWidth : 0;
    NotchShapeSpec shape = hanging(metrics, w + ears, 0, 6, bottomRadius);
    shape.isVisible = metrics.hasHardwareNotch || context.hasLiveActivity ||
                      context.nonNotchStyle == NonNotchStyle::pill;
    return shape;
}

NotchShapeSpec collapsedShape(const NotchLayoutContext &context)
{
    using namespace NotchLayout;
    const NotchMetrics &metrics = context.metrics;
    const double w = metrics.notchSize.width;
    if (context.hasLargeHUD)
        return hanging(metrics, std::max(largeHUDWidth, w + 80), largeHUDHeight, 10, 30);
    if (context.hasHUD)
        return hanging(metrics, std::max(500.0, w + 280), hudRowHeight, 8, 20);
    if (context.hasMailBanner)
        return hanging(metrics, std::max(mailBannerWidth, w + 80), mailBannerHeight, 10, 26);
    if (context.hasFeedback)
        return hanging(metrics, std::max(300.0, w + 80), feedbackRowHeight, 8, 18);
    return flatShape(context);
}

} // namespace

NotchLayoutContext NotchLayoutContext::withLargeHUD(bool largeHUD) const
{
    NotchLayoutContext copy = *this;
    copy.hasLargeHUD = largeHUD;
    return copy;
}

NotchLayoutContext NotchLayoutContext::withMailBanner(bool mailBanner) const
{
    NotchLayoutContext copy = *this;
    copy.hasMailBanner = mailBanner;
    return copy;
}

NotchLayoutContext NotchLayoutContext::withExpandedContentWidth(std::optional<double> width) const
{
    NotchLayoutContext copy = *this;
    copy.expandedContentWidth = width;
    return copy;
}

double NotchLayout::expandedWidth(PanelSize size)
{
    switch (size) {
    case PanelSize::compact:
        return 1040;
    case PanelSize::regular:
        return 1160;
    case PanelSize::large:
        return 1280;
    }
    return 1160;
}

double NotchLayout::contentHeight(PanelSize size)
{
    switch (size) {
    case PanelSize::compact:
        return 156;
    case PanelSize::regular:
        return 172;
    case PanelSize::large:
        return 192;
    }
    return 172;
}

double NotchLayout::dropResultWidth(PanelSize size)
{
    return expandedWidth(size) - 40;
}

NotchShapeSpec NotchLayout::shape(NotchPresentation presentation, const NotchLayoutContext &context)
{
    const NotchMetrics &metrics = context.metrics;
    const double w = metrics.notchSize.width;
    switch (presentation) {
    case collapsed:
        break;
    case preview:
        return hanging(
            metrics, context.hasContextStrip ? std::max(960.0, w + 780) : std::max(420.0, w + 230),
            previewRowHeight, 10, 22);
    case expanded:
        return hanging(metrics, expandedCoreWidth(context), contentHeight(context.panelSize), 12,
                       28);
    case dropTarget:
        return shape(expanded, context.withExpandedContentWidth(std::nullopt));
    case dropResult:
        return hanging(metrics, dropResultWidth(context.panelSize), dropResultHeight, 12, 30);
    }
    return collapsedShape(context);
}

double NotchLayout::minimumExpandedWidth(double notchWidth)
{
    return std::round(notchWidth + 480);
}

Size NotchLayout::canvasSize(const NotchLayoutContext &context)
{
    const NotchMetrics &metrics = context.metrics;
    Size box;
    const auto include = [&box](const NotchShapeSpec &spec) {
        box.width = std::max(box.width, spec.totalWidth() + 2 * std::abs(spec.horizontalOffset));
        box.height = std::max(box.height, spec.height());
    };

    NotchLayoutContext busy = context;
    busy.hasLiveActivity = busy.hasFeedback = busy.hasHUD = busy.hasContextStrip = true;
    for (const NotchPresentation presentation : allNotchPresentations)
        include(shape(presentation, busy));
    include(shape(collapsed, context.withLargeHUD(true)));
    include(shape(collapsed, context.withMailBanner(true)));

    // Whatever shows at the moment, the widest sides may follow it.
    const double side = (metrics.screenFrame.width - metrics.notchSize.width) / 2;
    include(shape(collapsed, {.metrics = metrics, .collapsedSides = CollapsedSides{side, side}}));

    return {std::ceil(std::min(metrics.screenFrame.width, box.width + 2 * shadowPadding)),
            std::ceil(box.height + shadowPadding)};
}

Rect NotchLayout::canvasFrame(const NotchLayoutContext &context)
{
    const auto &[hasHardwareNotch, notchSize, centerX, topY, screen] = context.metrics;
    const auto [width, height] = canvasSize(context);
    const double left =
        std::min(screen.maxX() - width, std::max(screen.minX(), centerX - width / 2));
    return {std::round(left), topY - height, width, height};
}

Rect NotchLayout::shapeFrame(const NotchShapeSpec &spec, const NotchLayoutContext &context)
{
    const NotchMetrics &metrics = context.metrics;
    return {metrics.centerX + spec.horizontalOffset - spec.totalWidth() / 2,
            metrics.topY - spec.height(), spec.totalWidth(), spec.height()};
}

std::vector<Rect> NotchLayout::outline(const NotchShapeSpec &spec,
                                       const NotchLayoutContext &context)
{
    const Rect frame = shapeFrame(spec, context);
    const double ear = std::min(spec.topRadius, frame.height);
    const double corner =
        std::min({spec.bottomRadius, spec.coreSize.width / 2, frame.height - ear});
    // How far a quarter of a circle has come in, `depth` points from where it starts.
    const auto inset = [](double radius, double depth) {
        const double rest = radius - std::clamp(depth, 0.0, radius);
        return radius - std::sqrt(radius * radius - rest * rest);
    };
    std::vector<Rect> rows;
    const auto add = [&](double top, double bottom, double fromSides) {
        if (bottom > top)
            rows.push_back({frame.minX() + fromSides, frame.maxY() - bottom,
                            frame.width - 2 * fromSides, bottom - top});
    };
    for (double y = 0; y < ear; ++y)
        add(y, std::min(y + 1, ear), spec.topRadius - inset(ear, y + 0.5));
    add(ear, frame.height - corner, spec.topRadius);
    for (double y = frame.height - corner; y < frame.height; ++y)
        add(y, std::min(y + 1, frame.height),
            spec.topRadius + inset(corner, frame.height - y - 0.5));
    return rows;
}

Rect NotchLayout::hoverZone(NotchPresentation presentation, const NotchLayoutContext &context)
{
    const NotchMetrics &metrics = context.metrics;
    const NotchShapeSpec spec = shape(presentation, context);
    const Rect frame = shapeFrame(spec, context);
    if (presentation != collapsed)
        return frame.outset(hoverMargin);
    if (spec.isVisible) {
        const double beside = metrics.hasHardwareNotch ? 4 : 10;
        return frame.outset(beside, beside, hoverMargin, 0);
    }
    // A hidden panel is still reached by pushing the pointer against the edge.
    const double w = metrics.notchSize.width;
    return {metrics.centerX - w / 2, metrics.topY - hoverMargin, w, hoverMargin};
}

Rect NotchLayout::hoverTriggerZone(NotchPresentation presentation,
                                   const NotchLayoutContext &context)
{
    const NotchMetrics &metrics = context.metrics;
    Rect zone = hoverZone(presentation, context);
    // Beside a cut-out the buttons at the sides have room; a banner's are below any notch.
    const bool hasButtons =
        (metrics.hasHardwareNotch && hasSides(context)) || context.hasMailBanner;
    if (presentation != collapsed || !hasButtons)
        return zone;
    const auto [w, h] = metrics.notchSize;
    zone.width = w + 8;
    zone.x = metrics.centerX - zone.width / 2;
    if (context.hasMailBanner) {
        zone.height = h + hoverMargin;
        zone.y = metrics.topY - zone.height;
    }
    return zone;
}

Rect NotchLayout::dropZone(NotchPresentation presentation, const NotchLayoutContext &context)
{
    const Rect frame = shapeFrame(shape(presentation, context), context);
    return isOpen(presentation) ? frame.outset(20) : frame.outset(80, 80, 70, 0);
}

} // namespace velmo
