#pragma once

/// Widths of rows of equal items in the panel, in points.
namespace velmo::PanelMetrics {

inline constexpr double sideMargin = 10;
inline constexpr double spacing = 10;

/// The width of `count` items side by side; 0 for none.
double row(int count, double item, double gap = spacing);

/// The width of one of `count` equal items that share `available`, in whole points within
/// `minimum` and `maximum`; `minimum` where there is nothing to share.
double fill(int count, double available, double minimum, double maximum, double gap = spacing);

} // namespace velmo::PanelMetrics
