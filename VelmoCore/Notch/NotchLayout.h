#pragma once

#include "VelmoCore/Notch/NotchGeometry.h"
#include "VelmoCore/Notch/NotchStateMachine.h"

#include <boost/describe.hpp>

#include <optional>
#include <vector>

namespace velmo {

/// The size of the open panel.
enum class PanelSize { compact, regular, large };
BOOST_DESCRIBE_ENUM(PanelSize, compact, regular, large)

/// What a collapsed panel looks like on a screen without a cut-out.
enum class NonNotchStyle { pill, hidden };
BOOST_DESCRIBE_ENUM(NonNotchStyle, pill, hidden)

/// The shape that hangs from the top edge: a body between two ears, which curve out to the edge.
struct NotchShapeSpec {
    Size coreSize; ///< the body without the ears
    double topRadius = 0;
    double bottomRadius = 0;
    bool isVisible = true;
    double horizontalOffset = 0; ///< shift from the notch's centre, right is positive

    double totalWidth() const { return coreSize.width + 2 * topRadius; }
    double height() const { return coreSize.height; }

    bool operator==(const NotchShapeSpec &) const = default;
};
BOOST_DESCRIBE_STRUCT(NotchShapeSpec, (),
                      (coreSize, topRadius, bottomRadius, isVisible, horizontalOffset))

/// The widths that the content wants left and right of the notch.
struct CollapsedSides {
    double left = 0;
    double right = 0;

    bool operator==(const CollapsedSides &) const = default;
};
BOOST_DESCRIBE_STRUCT(CollapsedSides, (), (left, right))

/// Everything a panel's shape depends on.
struct NotchLayoutContext {
    NotchMetrics metrics;
    PanelSize panelSize = PanelSize::regular;
    bool hasLiveActivity = false;
    bool hasFeedback = false;
    NonNotchStyle nonNotchStyle = NonNotchStyle::pill;
    bool hasHUD = false;
    bool hasLargeHUD = false;
    bool hasMailBanner = false;
    bool hasContextStrip = false; ///< the tools of the application in front are in the preview
    std::optional<CollapsedSides> collapsedSides;
    std::optional<double> expandedContentWidth; ///< what the open module asks for

    NotchLayoutContext withLargeHUD(bool largeHUD) const;
    NotchLayoutContext withMailBanner(bool mailBanner) const;
    NotchLayoutContext withExpandedContentWidth(std::optional<double> width) const;

    bool operator==(const NotchLayoutContext &) const = default;
};
BOOST_DESCRIBE_STRUCT(NotchLayoutContext, (),
                      (metrics, panelSize, hasLiveActivity, hasFeedback, nonNotchStyle, hasHUD,
                       hasLargeHUD, hasMailBanner, hasContextStrip, collapsedSides,
                       expandedContentWidth))

/// Shapes, canvas and zones of a panel, in points with y upward.
namespace NotchLayout {

inline constexpr double earWidth = 40;
inline constexpr double feedbackRowHeight = 34;
inline constexpr double hudRowHeight = 52;
inline constexpr double largeHUDHeight = 166;
inline constexpr double largeHUDWidth = 420;
inline constexpr double mailBannerHeight = 126;
inline constexpr double mailBannerWidth = 520;
inline constexpr double previewRowHeight = 54;
inline constexpr double dropTargetHeight = 104;
inline constexpr double dropResultHeight = 178;
inline constexpr double shadowPadding = 64;
inline constexpr double screenMargin = 12;

double expandedWidth(PanelSize size);
double contentHeight(PanelSize size);
double dropResultWidth(PanelSize size);

NotchShapeSpec shape(NotchPresentation presentation, const NotchLayoutContext &context);

/// The least width of an open panel over a notch of that width: 240 on either side.
double minimumExpandedWidth(double notchWidth);

/// The size of the box that holds every possible shape and its shadow. The window has it for good.
Size canvasSize(const NotchLayoutContext &context);
Rect canvasFrame(const NotchLayoutContext &context);
Rect shapeFrame(const NotchShapeSpec &spec, const NotchLayoutContext &context);
/// The shape as rectangles that don't overlap, from top to bottom: a row a point where an edge is
/// round, one rectangle between.
std::vector<Rect> outline(const NotchShapeSpec &spec, const NotchLayoutContext &context);

/// Where the panel takes the pointer.
Rect hoverZone(NotchPresentation presentation, const NotchLayoutContext &context);
/// Where a resting pointer may open it: narrower where there are buttons beside the notch.
Rect hoverTriggerZone(NotchPresentation presentation, const NotchLayoutContext &context);
/// Where a drag counts as being over it.
Rect dropZone(NotchPresentation presentation, const NotchLayoutContext &context);

} // namespace NotchLayout
} // namespace velmo
