#pragma once

namespace programs {

/// Whether there is a display to open a window on, or the toolkit has been told where to draw.
[[nodiscard]] bool hasDisplay();

/// Chooses how the toolkit draws, wherever the user has left it open. Before the QGuiApplication is made.
void prepareDrawing(bool picturesOnly);

} // namespace programs
