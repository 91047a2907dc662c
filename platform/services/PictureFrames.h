#pragma once

#include <cstdint>

namespace platform {

/// What travels between the picture decoder and its program, lumora-pictures. Both come from one build and run on one
/// machine, so numbers travel as they stand in memory. The next question comes after the answer to the last.

/// Goes before the path of a file that is to be drawn so many pixels wide and high.
struct PictureQuestion {
    static constexpr std::uint32_t kMark = 0x5150554C; ///< "LUPQ"
    static constexpr std::uint32_t kMostPixels = 1024;
    static constexpr std::uint32_t kLongestPath = 4096;

    std::uint32_t mark = kMark;
    std::uint32_t number = 0; ///< the answer has the same
    std::uint32_t pixels = 0;
    std::uint32_t pathLength = 0;
};

/// Goes before the PNG file, which has the length 0 when the picture cannot be drawn.
struct PictureAnswer {
    static constexpr std::uint32_t kMark = 0x4150554C; ///< "LUPA"

    std::uint32_t mark = kMark;
    std::uint32_t number = 0;
    std::uint32_t length = 0;

    /// In bytes: pixels of four bytes that do not compress, and what a PNG file has around them.
    [[nodiscard]] static constexpr std::uint32_t longestFor(std::uint32_t pixels) { return pixels * pixels * 5 + 4096; }
};

/// The size in bytes up to which a file is read; no honest icon is larger.
inline constexpr std::int64_t kLargestPictureFile = 16 << 20;

} // namespace platform
