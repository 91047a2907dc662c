#pragma once

#include <cstddef>
#include <cstdint>

namespace lumora {

/// How ViewHost and its program speak to each other. What the program answers has the form of a probe's answers
/// (LoadProbe.h): first that it is ready, or why not, and then to each question one of these.
inline constexpr char kDrawnAnswer = 'd';   ///< with the archive of a drawing
inline constexpr char kTooMuchAnswer = 'm'; ///< why the drawing is beyond the limits
inline constexpr char kFailedAnswer = 'f';  ///< why there is none

inline constexpr std::size_t kLongestQuestion = std::size_t{8} << 20;
/// What a plug-in may take to draw, beyond its own library.
inline constexpr std::uint64_t kMostMemory = std::uint64_t{8} << 20;

} // namespace lumora
