#pragma once

#include <cstdint>
#include <filesystem>
#include <vector>

namespace decoder {

/// Decodes a picture and returns it as a PNG file, exactly `pixels` wide and high: scaled to fit and centred on a
/// transparent ground. Empty if the file holds no picture that can be drawn. One thread.
[[nodiscard]] std::vector<std::uint8_t> drawPicture(const std::filesystem::path& file, int pixels);

} // namespace decoder
