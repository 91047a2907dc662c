#pragma once

#include "appview/Question.h"
#include "appview/TextExtents.h"
#include "lists/PluginDiscovery.h"

#include <string>

namespace lumora {

/// What came of a question, as lumora-appview tells it.
struct DrawingAnswer {
    char letter; ///< one of ViewAnswers.h
    std::string text;
};

/// Has a plug-in draw, in this process, within the limits in steps, bytes and memory. Main thread.
[[nodiscard]] DrawingAnswer answerOf(const Plugin& plugin, const DrawingQuestion& question, const TextExtents& extents);

} // namespace lumora
