#include "appview/AnswerOf.h"

#include "appview/Recorder.h"
#include "appview/ViewAnswers.h"

#include <algorithm>
#include <cstdio>
#include <list>
#include <sys/resource.h>
#include <unistd.h>
#include <utility>

namespace lumora {

using platform::Result;

namespace {

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool kSanitized = true; // takes far more than the plug-in
#else
constexpr bool kSanitized = false;
#endif

constexpr std::size_t kOwnMemory = std::size_t{8} << 20; // for the steps, and what is left of archives

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
    explicit Told(const DrawingQuestion& question) : LumoraDrawing{}, settings(question.settings) {
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

} // namespace

std::size_t memoryToDraw() {
    std::size_t pages = 0;
    std::FILE* sizes = kSanitized ? nullptr : std::fopen("/proc/self/statm", "re");
    if (!sizes) return 0;
    const bool known = std::fscanf(sizes, "%zu", &pages) == 1; // NOLINT(cert-err34-c): written by the system
    std::fclose(sizes);
    return known ? pages * static_cast<std::size_t>(::sysconf(_SC_PAGESIZE)) + kMostMemory + kOwnMemory : 0;
}

DrawingAnswer answerOf(const Plugin& plugin, const DrawingQuestion& question, const TextExtents& extents,
                       std::size_t mostMemory) {
    const Told told(question);
    Recorder recorder(extents);
    auto again = Result<double>::failure({});
    {
        const MemoryLimit limit(mostMemory);
        again = plugin.draw(recorder.canvas(), told);
    }
    if (!again) return {kFailedAnswer, again.error()};
    auto steps = recorder.take();
    if (!steps) return {kTooMuchAnswer, steps.error()};
    const double seconds = again.value();
    const double pause = seconds > 0 ? std::clamp(seconds, 1.0, DrawingLimits::again) : 0; // 0 for no number
    const auto archive = writeDrawing({std::move(steps).value(), pause});
    if (!archive) return {kTooMuchAnswer, archive.error()};
    return {kDrawnAnswer, std::string(archive.value().begin(), archive.value().end())};
}

} // namespace lumora
