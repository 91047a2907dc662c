#pragma once

#include "appview/Question.h"
#include "appview/TextExtents.h"
#include "lists/PluginDiscovery.h"

#include <cstddef>
#include <string>

namespace lumora {

/// What came of a question, as lumora-appview tells it.
struct DrawingAnswer {
    char letter; ///< one of ViewAnswers.h
    std::string text;
};

/// The memory that this process may have while a plug-in draws that is loaded by now, in bytes; 0 for no limit. Whoever
/// asks for it once has what is lost in one drawing missing in the next.
[[nodiscard]] std::size_t memoryToDraw();

/// Has a plug-in draw, in this process, within the limits in steps, bytes and memory. Main thread.
[[nodiscard]] DrawingAnswer answerOf(const Plugin& plugin, const DrawingQuestion& question, const TextExtents& extents,
                                     std::size_t mostMemory);

} // namespace lumora
