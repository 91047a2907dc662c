#pragma once

#include <cstddef>

/// What this program took from the allocator since a point in time. The whole program counts, libraries included.
///
///     const Allocations before = Allocations::now();
///     …
///     EXPECT_LE((Allocations::now() - before).bytes, 1000);
struct Allocations {
    std::size_t count = 0;
    std::size_t bytes = 0;
    std::size_t freed = 0; ///< how many were given back

    [[nodiscard]] static Allocations now();
    friend Allocations operator-(const Allocations& a, const Allocations& b) {
        return {a.count - b.count, a.bytes - b.bytes, a.freed - b.freed};
    }
};
