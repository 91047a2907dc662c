#include "programs/Size.h"

#include <charconv>

namespace programs {

std::optional<platform::CGSize> sizeFrom(const std::string& text) {
    constexpr double largestSide = 8192;
    platform::CGSize size;
    const char* const end = text.data() + text.size();
    const auto width = std::from_chars(text.data(), end, size.width);
    if (width.ec != std::errc() || width.ptr == end || *width.ptr != 'x') return std::nullopt;
    const auto height = std::from_chars(width.ptr + 1, end, size.height);
    if (height.ec != std::errc() || height.ptr != end) return std::nullopt;
    const auto fits = [](double side) { return side >= 1 && side <= largestSide; };
    return fits(size.width) && fits(size.height) ? std::optional(size) : std::nullopt;
}

std::string isSize(const std::string& text) {
    return sizeFrom(text) ? "" : "is no size such as 390x844: " + text;
}

} // namespace programs
