// Any bytes are a drawing or are refused with a reason; what is taken is within the limits, and is the same drawing when
// it is written and read again. Any bytes may be a question, too, which the plug-in's process reads.

#include "Fuzzer.h"

#include "appview/Drawing.h"
#include "appview/Question.h"

using fuzz::require;
using lumora::DrawingLimits;
using platform::Data;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const Data archive(bytes, bytes + size);
    const auto question = lumora::readQuestion(archive);
    require(question || !question.error().empty());

    const auto drawing = lumora::readDrawing(archive);
    require(drawing || !drawing.error().empty());
    if (!drawing) return 0;
    ++fuzz::taken;
    require(drawing.value().steps.size() <= DrawingLimits::steps);
    require(drawing.value().again >= 0 && drawing.value().again <= DrawingLimits::again);
    for (const lumora::DrawingStep& step : drawing.value().steps)
        require(step.text.size() <= DrawingLimits::textBytes);

    const auto written = lumora::writeDrawing(drawing.value());
    if (!written) return 0; // what shares its lists takes more room without
    const auto again = lumora::readDrawing(written.value());
    require(again && again.value() == drawing.value());
    return 0;
}
