#pragma once

#include <filesystem>
#include <optional>
#include <string>

class QQuickWindow;

namespace programs {

/// Whether the program saves pictures and opens no window: where it is asked for pictures, or where there is no display.
/// There it takes a tour instead, to `folder` in the working directory, and says so.
[[nodiscard]] bool savesPicturesOnly(const std::optional<std::filesystem::path>& grab,
                                     std::optional<std::filesystem::path>& tour, const char* folder);

/// Chooses how the toolkit draws, wherever the user has left it open. Before the QGuiApplication is made.
/// `renderer` is the word of addRenderer().
void prepareDrawing(bool picturesOnly, const std::string& renderer);

/// Has the program say so and fail where the renderer cannot draw the window, as on a GPU that is not there.
void failWithoutRenderer(QQuickWindow& window);

} // namespace programs
