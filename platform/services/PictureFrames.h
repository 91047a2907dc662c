#pragma once

#include <cstdint>

namespace platform {

/// What travels between the picture decoder and its program, lumora-pictures. Both are of one build and one machine, so
/// numbers stand as they stand in memory. Each question has one answer, and the next comes after it.

/// Goes before the path of a file, which is to be drawn so many pixels wide and high.
struct PictureQuestion {
    static constexpr std::uint32_t kMark = 0x5150554C; ///< "LUPQ"
    static constexpr std::uint32_t kMostPixels = 1024;
    static constexpr std::uint32_t kLongestPath = 4096;

    std::uint32_t mark = kMark;
    std::uint32_t number = 0; ///< says which answer is its own
    std::uint32_t pixels = 0;
    std::uint32_t pathLength = 0;
};

/// Goes before the PNG file that was drawn; of no length when there is nothing to be drawn.
struct PictureAnswer {
    static constexpr std::uint32_t kMark = 0x4150554C; ///< "LUPA"

    std::uint32_t mark = kMark;
    std::uint32_t number = 0;
    std::uint32_t length = 0;

    /// Points of four bytes that nothing could press together, and what a file has around them.
    [[nodiscard]] static constexpr std::uint32_t longestFor(std::uint32_t pixels) { return pixels * pixels * 5 + 4096; }
};

/// The largest file that is looked at, in bytes: other sizes are no mistake of who made an icon.
inline constexpr std::int64_t kLargestPictureFile = 16 << 20;

} // namespace platform
