#pragma once

#include <lumora/AppView.h>

namespace notes {

/// Draws the sample's notes in the order that the user wants; the one on top is open. Any thread.
double drawNotes(const LumoraCanvas* canvas, const LumoraDrawing* drawing);

} // namespace notes
