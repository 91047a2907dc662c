#pragma once

#include <lumora/AppView.h>

namespace weather {

/// Draws the sample's forecast: what it is like now, and at the hours ahead. Any thread.
double drawForecast(const LumoraCanvas* canvas, const LumoraDrawing* drawing);

} // namespace weather
