#pragma once

#include "appview/Question.h"
#include "appview/TextExtents.h"
#include "lists/PluginDiscovery.h"
#include "platform/foundation/Value.h"

#include <string>
#include <vector>

namespace lumora {

/// What a plug-in that draws is asked: cards of three widths, dark and light, with usual texts and the largest.
[[nodiscard]] std::vector<DrawingQuestion> questionsToJudge();

/// As "320 × 260 points, dark, texts at 100 %".
[[nodiscard]] std::string placeOf(const DrawingQuestion& question);

/// Has a plug-in draw once, and judges time, size and texts, with one finding of a kind at the most:
///
///     {"findings": [{"check": …, "what": …}, …]}
///
/// Main thread, as for what follows.
[[nodiscard]] platform::Dictionary judgeDrawing(const Plugin& plugin, const DrawingQuestion& question,
                                                const TextExtents& extents);

/// Has it draw a thousand times, or as often as it can in 5 s of the processor and 20 s in all, each time a
/// minute later.
[[nodiscard]] platform::Dictionary judgeLeaks(const Plugin& plugin, const DrawingQuestion& question,
                                              const TextExtents& extents);

} // namespace lumora
