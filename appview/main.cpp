// lumora-appview has one App View plug-in draw, so that any harm is done to this process. ViewHost calls it
//
//     lumora-appview TOKEN ROOT BUNDLE
//
// and writes questions: a line with their length, and that many bytes (Question.h). Each is answered with a drawing.

#include "appview/Question.h"
#include "appview/Recorder.h"
#include "appview/ViewAnswers.h"
#include "lists/PluginDiscovery.h"
#include "platform/foundation/DeviceRoot.h"
#include "platform/foundation/NSBundle.h"
#include "platform/foundation/SharedObject.h"
#include "probe/Channel.h"
#include "probe/Traps.h"

#include <algorithm>
#include <cstdio>
#include <list>
#include <optional>
#include <string>
#include <sys/resource.h>
#include <unistd.h>
#include <utility>

namespace {

using platform::Data;
using platform::Result;

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool kSanitized = true; // takes far more than the plug-in
#else
constexpr bool kSanitized = false;
#endif

constexpr rlim_t kOwnMemory = rlim_t{8} << 20; // for the steps, and what is left of archives

/// What this process has of memory, in bytes; 0 where it is not to be limited.
rlim_t memoryTaken() {
    unsigned long pages = 0;
    std::FILE* sizes = kSanitized ? nullptr : std::fopen("/proc/self/statm", "re");
    if (!sizes) return 0;
    const bool known = std::fscanf(sizes, "%lu", &pages) == 1; // NOLINT(cert-err34-c): written by the system
    std::fclose(sizes);
    return known ? pages * static_cast<rlim_t>(::sysconf(_SC_PAGESIZE)) : 0;
}

/// While it lives, this process has no more memory than so many bytes; 0 is no limit.
class MemoryLimit {
  public:
    explicit MemoryLimit(rlim_t bytes) {
        ::getrlimit(RLIMIT_AS, &before_);
        rlimit limit = before_;
        limit.rlim_cur = std::min(before_.rlim_max, bytes);
        if (bytes > 0) ::setrlimit(RLIMIT_AS, &limit);
    }
    MemoryLimit(const MemoryLimit&) = delete;
    MemoryLimit& operator=(const MemoryLimit&) = delete;
    ~MemoryLimit() { ::setrlimit(RLIMIT_AS, &before_); }

  private:
    rlimit before_{};
};

/// What a plug-in is told, with the settings behind it.
struct Told : LumoraDrawing {
    explicit Told(const lumora::DrawingQuestion& question) : LumoraDrawing{}, settings(question.settings) {
        version = LUMORA_APP_VIEW_VERSION;
        dark = question.dark ? 1 : 0;
        width = question.width;
        height = question.height;
        textScale = question.textScale;
        year = question.time.tm_year + 1900;
        month = question.time.tm_mon + 1;
        day = question.time.tm_mday;
        weekday = question.time.tm_wday;
        hour = question.time.tm_hour;
        minute = question.time.tm_min;
        second = question.time.tm_sec;
        number = [](const LumoraDrawing* drawing, const char* key, double otherwise) {
            const auto value = static_cast<const Told*>(drawing)->settings[key ? key : ""];
            return value.isNumber() || value.boolean() ? value.doubleValue() : otherwise;
        };
        text = [](const LumoraDrawing* drawing, const char* key, const char* otherwise) {
            const auto value = static_cast<const Told*>(drawing)->settings[key ? key : ""];
            if (!value.text()) return otherwise;
            auto& told = static_cast<const Told*>(drawing)->texts.emplace_back(*value.text());
            return told.c_str();
        };
    }

    platform::Dictionary settings;
    mutable std::list<std::string> texts; ///< that were answered
};

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

struct Answer {
    char letter;
    std::string text;
};

Answer answerTo(const lumora::DrawingQuestion& question, const lumora::Plugin& plugin,
                const lumora::TextExtents& extents, rlim_t mostMemory) {
    const Told told(question);
    lumora::Recorder recorder(extents);
    auto again = Result<double>::failure({});
    {
        const MemoryLimit limit(mostMemory);
        again = plugin.draw(recorder.canvas(), told);
    }
    if (!again) return {lumora::kFailedAnswer, again.error()};
    auto steps = recorder.take();
    if (!steps) return {lumora::kTooMuchAnswer, steps.error()};
    const double seconds = again.value();
    const double pause = seconds > 0 ? std::clamp(seconds, 1.0, lumora::DrawingLimits::again) : 0; // 0 for no number
    const auto archive = lumora::writeDrawing({std::move(steps).value(), pause});
    if (!archive) return {lumora::kTooMuchAnswer, archive.error()};
    return {lumora::kDrawnAnswer, std::string(archive.value().begin(), archive.value().end())};
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
    // Measured once, so that what is lost in one drawing is missing in the next.
    const rlim_t loaded = memoryTaken();
    const rlim_t most = loaded > 0 ? loaded + lumora::kMostMemory + kOwnMemory : 0;
    for (std::size_t number = 1;; ++number) {
        const auto question = nextQuestion(questions);
        if (!question) break;
        Answer answer = answerTo(*question, examination.plugin().value(), extents, most);
        if (const auto kept = traps.check(); !kept) answer = {lumora::kFailedAnswer, kept.error()};
        channel.say(number, answer.letter, answer.text);
    }
    ::_exit(0); // without the destructors of what was loaded, which Settings does not run either
}
