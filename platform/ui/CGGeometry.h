#pragma once

namespace platform {

/// Points, with the origin at the top left, x to the right and y downwards.
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

/// A frame is written in the order x, y, width, height.
constexpr CGRect CGRectMake(double x, double y, double width, double height) {
    return {{x, y}, {width, height}};
}

} // namespace platform
