#pragma once

#include <array>
#include <cstddef>
#include <sys/types.h>

namespace tests {

/// What a process holds at a moment.
///
///     const Census now = Census::ofSelf();
///     now[Census::threads];
///
/// Any thread.
struct Census {
    enum Quantity : unsigned char { descriptors, threads, residentKb, heapKb };
    static constexpr std::size_t kQuantities = 4;

    /// Heap in use is known of the own process only.
    [[nodiscard]] static Census ofSelf();
    /// Of another process of this user, its heap as 0. All are 0 for one that is not there.
    [[nodiscard]] static Census of(pid_t process);

    [[nodiscard]] long operator[](std::size_t quantity) const { return held.at(quantity); }

    std::array<long, kQuantities> held{};
};

} // namespace tests
