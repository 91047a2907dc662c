#pragma once

#include <cstddef>
#include <string_view>

namespace platform {

/// What a binary property list begins with, and how many bytes its end has.
inline constexpr std::string_view binaryMagic = "bplist00";
inline constexpr std::size_t binaryTrailerSize = 32;

} // namespace platform
