// lumora-appview has one App View plug-in draw, so that any harm is done to this process. ViewHost calls it
//
//     lumora-appview TOKEN ROOT BUNDLE
//
// and writes questions: a line with their length, and that many bytes (Question.h). Each is answered with a drawing.

#include "appview/AnswerOf.h"
#include "appview/Question.h"
#include "appview/ViewAnswers.h"
#include "lists/PluginDiscovery.h"
#include "platform/foundation/DeviceRoot.h"
#include "platform/foundation/NSBundle.h"
#include "platform/foundation/SharedObject.h"
#include "probe/Channel.h"
#include "probe/Traps.h"

#include <cstdio>
#include <optional>
#include <string>
#include <unistd.h>

namespace {

using platform::Data;
using platform::Result;

/// Nothing at the end, and for what is no question.
std::optional<lumora::DrawingQuestion> nextQuestion(std::FILE* from) {
    std::size_t length = 0;
    if (std::fscanf(from, "%zu", &length) != 1 || std::fgetc(from) != '\n') return {}; // NOLINT(cert-err34-c)
    if (length > lumora::kLongestQuestion) return {};
    Data bytes(length);
    if (std::fread(bytes.data(), 1, length, from) != length) return {};
    const auto question = lumora::readQuestion(bytes);
    return question ? std::optional(question.value()) : std::nullopt;
}

} // namespace

// Nothing throws here but for want of memory, and that had better end the program.
// NOLINTNEXTLINE(bugprone-exception-escape)
int main(int argc, char** argv) {
    if (argc != 4) return 2;
    // Out of the plug-in's way, as the answers are.
    std::FILE* questions = ::fdopen(lumora::moveUp(platform::FileDescriptor(STDIN_FILENO)).release(), "rb");
    const lumora::Channel channel(argv[1]);
    if (!questions) return 1;
    platform::setDeviceRoot(argv[2]);
    const lumora::TextExtents extents;
    if (const auto bundle = platform::NSBundle::bundleWithPath(platform::standardBundle())) bundle->load();
    const lumora::Traps traps;

    const auto bundle = platform::NSBundle::bundleWithPath(argv[3]);
    const auto sound =
        bundle ? platform::checkSharedObject(bundle->executablePath()) : Result<void>::failure("it is no folder");
    if (!sound) {
        channel.say(0, lumora::kFailedAnswer, sound.error());
        return 1;
    }
    const lumora::PluginExamination examination(bundle);
    if (!examination.plugin()) {
        channel.say(0, lumora::kFailedAnswer, examination.plugin().error());
        return 1;
    }
    channel.say(0, platform::kReadyAnswer, {});
    const std::size_t most = lumora::memoryToDraw();
    for (std::size_t number = 1;; ++number) {
        const auto question = nextQuestion(questions);
        if (!question) break;
        lumora::DrawingAnswer answer = lumora::answerOf(examination.plugin().value(), *question, extents, most);
        if (const auto kept = traps.check(); !kept) answer = {lumora::kFailedAnswer, kept.error()};
        channel.say(number, answer.letter, answer.text);
    }
    ::_exit(0); // without the destructors of what was loaded, which Settings does not run either
}
