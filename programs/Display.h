#pragma once

#include <filesystem>
#include <optional>

namespace programs {

/// Whether the program saves pictures and opens no window: where it is asked for pictures, or where there is no display.
/// There it takes a tour instead, to `folder` in the working directory, and says so.
[[nodiscard]] bool savesPicturesOnly(const std::optional<std::filesystem::path>& grab,
                                     std::optional<std::filesystem::path>& tour, const char* folder);

/// Chooses how the toolkit draws, wherever the user has left it open. Before the QGuiApplication is made.
void prepareDrawing(bool picturesOnly);

} // namespace programs
