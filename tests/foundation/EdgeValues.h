#pragma once

#include "platform/foundation/Value.h"

#include <cmath>
#include <limits>
#include <utility>

/// Around each power of two, and at both ends of what 64 bits hold.
inline platform::List edgeIntegers() {
    using Limits = std::numeric_limits<std::int64_t>;
    platform::List list{Limits::max() - 1, Limits::max(), Limits::min(), Limits::min() + 1};
    for (unsigned bits = 0; bits < 63; ++bits)
        for (const std::int64_t away : {-1, 0, 1})
            for (const std::int64_t sign : {1, -1})
                list.emplace_back(sign * ((std::int64_t{1} << bits) + away));
    return list;
}

/// Numbers that 32 bits hold and some that they do not, at the edges of both sizes. NaN is left out, since it equals
/// nothing.
inline platform::List edgeReals() {
    using Limits = std::numeric_limits<double>;
    using Short = std::numeric_limits<float>;
    platform::List list;
    for (const double real : {0.0, 1.0, 0.5, 0.1, 1.0 / 3, 16777217.0, Limits::min(), Limits::denorm_min(),
                              Limits::max(), Limits::epsilon(), Limits::infinity(), double{Short::max()},
                              double{Short::min()}, double{Short::denorm_min()}, double{0.1F}, std::nextafter(1.0, 2.0),
                              std::nextafter(double{Short::max()}, 0.0), 9007199254740993.0})
        for (const double sign : {1.0, -1.0})
            list.emplace_back(sign * real);
    return list;
}

/// A value in so many lists and dictionaries in turn; the innermost is a list.
inline platform::Value nested(unsigned levels, platform::Value value = "ground") {
    for (unsigned i = 0; i < levels; ++i)
        value = i % 2 == 0 ? platform::Value(platform::List{std::move(value)})
                           : platform::Value(platform::Dictionary{{"k", std::move(value)}});
    return value;
}
