#pragma once

#include <QImage>

#include <filesystem>

namespace programs {

/// Saves a picture as a PNG file; false when that fails. A regular file has the whole picture afterwards, or is as it
/// was; others, such as /dev/stdout, are written in place.
[[nodiscard]] bool savePicture(const QImage& picture, const std::filesystem::path& file);

} // namespace programs
