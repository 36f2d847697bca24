#pragma once

#include <boost/describe.hpp>

#include <algorithm>

namespace velmo {

/// A place on the desktop in points. y grows upward: a screen's top edge is its largest y.
struct Point {
    double x = 0;
    double y = 0;

    bool operator==(const Point &) const = default;
};
BOOST_DESCRIBE_STRUCT(Point, (), (x, y))

/// Width and height in points.
struct Size {
    double width = 0;
    double height = 0;

    bool operator==(const Size &) const = default;
};
BOOST_DESCRIBE_STRUCT(Size, (), (width, height))

/// A rectangle in points with y upward; (`x`, `y`) is its lower left corner.
struct Rect {
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;

    constexpr double minX() const { return x; }
    constexpr double midX() const { return x + width / 2; }
    constexpr double maxX() const { return x + width; }
    constexpr double minY() const { return y; }
    constexpr double midY() const { return y + height / 2; }
    constexpr double maxY() const { return y + height; }

    /// Holds its lower and left edges, not its upper and right ones, so that rectangles side by
    /// side never share a point.
    constexpr bool contains(Point point) const
    {
        return point.x >= minX() && point.x < maxX() && point.y >= minY() && point.y < maxY();
    }

    /// The rectangle with each side moved outward by so many points.
    constexpr Rect outset(double left, double right, double below, double above) const
    {
        return {x - left, y - below, width + left + right, height + below + above};
    }
    constexpr Rect outset(double all) const { return outset(all, all, all, all); }

    bool operator==(const Rect &) const = default;
};
BOOST_DESCRIBE_STRUCT(Rect, (), (x, y, width, height))

} // namespace velmo
