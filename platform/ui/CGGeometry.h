#pragma once

#include <algorithm>

namespace platform {

/// All lengths are in points; the origin is at the top left, x runs to the right and y downwards. Any thread.
struct CGPoint {
    double x = 0;
    double y = 0;
    friend bool operator==(const CGPoint&, const CGPoint&) = default;
};

struct CGSize {
    double width = 0;
    double height = 0;
    friend bool operator==(const CGSize&, const CGSize&) = default;
};

struct CGRect {
    CGPoint origin;
    CGSize size;
    friend bool operator==(const CGRect&, const CGRect&) = default;
};

constexpr CGRect CGRectMake(double x, double y, double width, double height) {
    return {{x, y}, {width, height}};
}

/// The left and top edges belong to a rectangle, the right and bottom edges do not.
constexpr bool CGRectContainsPoint(const CGRect& rect, CGPoint point) {
    return point.x >= rect.origin.x && point.x < rect.origin.x + rect.size.width && point.y >= rect.origin.y &&
           point.y < rect.origin.y + rect.size.height;
}

/// The smallest rectangle that contains both.
constexpr CGRect CGRectUnion(const CGRect& one, const CGRect& other) {
    const double left = std::min(one.origin.x, other.origin.x);
    const double top = std::min(one.origin.y, other.origin.y);
    return CGRectMake(left, top, std::max(one.origin.x + one.size.width, other.origin.x + other.size.width) - left,
                      std::max(one.origin.y + one.size.height, other.origin.y + other.size.height) - top);
}

constexpr CGPoint CGRectGetCenter(const CGRect& rect) {
    return {rect.origin.x + rect.size.width / 2, rect.origin.y + rect.size.height / 2};
}

} // namespace platform
