#pragma once

#include <cstdint>
#include <filesystem>
#include <vector>

namespace decoder {

/// Decodes a picture and gives it as a PNG file, exactly so many pixels wide and high: scaled to fit, centred, with
/// nothing around it. Empty when the file holds no picture that can be drawn.
[[nodiscard]] std::vector<std::uint8_t> drawPicture(const std::filesystem::path& file, int pixels);

} // namespace decoder
