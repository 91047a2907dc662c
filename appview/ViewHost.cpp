#include "appview/ViewHost.h"

#include "appview/ViewAnswers.h"

#include "platform/foundation/ChildProcess.h"
#include "platform/foundation/DeviceRoot.h"
#include "platform/foundation/HelperProgram.h"
#include "platform/foundation/LoadProbe.h"

#include <algorithm>
#include <condition_variable>
#include <csignal>
#include <mutex>
#include <optional>
#include <system_error>
#include <thread>
#include <utility>

using platform::ChildProcess;
using platform::Data;
using platform::Result;

namespace lumora {
namespace {

using Heard = ChildProcess::Heard;
using Outcome = ViewAnswer::Outcome;

constexpr std::chrono::seconds kWholeLife(60);   // of the processor
constexpr std::chrono::milliseconds kSlice(100); // after which one that nobody waits for any more is ended

/// What the process is started with, as it is when its host is made: another thread starts it, at any time.
struct Program {
    const std::filesystem::path file = platform::helperProgram("lumora-appview");
    const std::filesystem::path deviceRoot = platform::deviceRoot();
    const std::filesystem::path bundle;
};

/// The process, while it lives.
class Artist {
  public:
    Artist(const ViewHost::Limits& limits, std::function<bool()> isWanted)
        : limits_(limits), isWanted_(std::move(isWanted)) {}

    Result<void> start(const Program& program) {
        auto limits = platform::kForeignCodeLimits;
        limits.processor = kWholeLife;
        auto child = ChildProcess::start(
            {program.file.string(), token_, program.deviceRoot.string(), program.bundle.string()}, limits);
        if (!child) return Result<void>::failure(child.error());
        child_ = std::move(child).value();
        const auto ready = hear(std::string{platform::kReadyAnswer, kFailedAnswer},
                                child_->patience(limits_.starting, limits_.startingProcessor));
        if (!ready) return Result<void>::failure(ready.error());
        return ready.value().answer == kFailedAnswer ? Result<void>::failure(ready.value().text) : Result<void>();
    }

    ViewAnswer ask(const Data& question) {
        // Between questions all of it stands still, so that a thread of the plug-in's costs nothing that nobody counts.
        ::kill(-child_->id(), SIGCONT);
        ViewAnswer answer = answerTo(question);
        ::kill(-child_->id(), SIGSTOP);
        return answer;
    }

  private:
    ViewAnswer answerTo(const Data& question) {
        const auto patience = child_->patience(limits_.clock, limits_.processor);
        const std::string bytes =
            std::to_string(question.size()) + "\n" + std::string(question.begin(), question.end());
        if (!child_->send(bytes, patience)) return {Outcome::stopped, 0, {}, "its process has ended"};
        const auto heard = hear(std::string{kDrawnAnswer, kTooMuchAnswer, kFailedAnswer}, patience);
        if (!heard) return {Outcome::stopped, 0, {}, heard.error()};
        const auto& [answer, text] = heard.value();
        if (answer == kTooMuchAnswer) return {Outcome::tooMuch, 0, {}, text};
        if (answer == kFailedAnswer) return {Outcome::stopped, 0, {}, text};
        auto drawing = readDrawing(Data(text.begin(), text.end()));
        if (!drawing) return {Outcome::stopped, 0, {}, drawing.error()};
        return {Outcome::drawn, 0, std::move(drawing).value(), {}};
    }
    /// The next answer, which is one of these.
    Result<platform::ProbeAnswer> hear(const std::string& expected, const ChildProcess::Patience& patience) {
        constexpr std::size_t most = DrawingLimits::bytes;
        constexpr std::size_t withLine = most + 1024;
        const auto fail = [](std::string why) { return Result<platform::ProbeAnswer>::failure(std::move(why)); };
        for (;;) {
            auto taken = platform::takeProbeAnswer(unread_, token_, number_, expected, most);
            if (!taken) return fail(taken.error());
            if (taken.value()) {
                ++number_;
                return *taken.value();
            }
            auto slice = patience;
            slice.until = std::min(patience.until, std::chrono::steady_clock::now() + kSlice);
            switch (child_->receive(unread_, withLine, slice)) {
            case Heard::something:
                continue;
            case Heard::tooLate:
                if (std::chrono::steady_clock::now() < patience.until && isWanted_()) continue;
                return fail("it takes too long");
            case Heard::tooCostly:
                return fail("it takes too long");
            default:
                return fail("its process has ended");
            }
        }
    }

    ViewHost::Limits limits_;
    std::function<bool()> isWanted_;
    std::string token_ = platform::newProbeToken();
    std::size_t number_ = 0; ///< of the answer that comes next
    std::string unread_;
    std::unique_ptr<ChildProcess> child_;
};

} // namespace

/// The thread's side. The thread has a share of it, and nobody waits for its end.
class ViewHost::Worker {
  public:
    Worker(std::filesystem::path bundle, Listener listener, const Limits& limits)
        : program_{.bundle = std::move(bundle)}, limits_(limits), listener_(std::move(listener)) {}

    std::uint64_t put(DrawingQuestion question) {
        const std::lock_guard lock(mutex_);
        waiting_ = {++last_, std::move(question)};
        changed_.notify_one();
        return last_;
    }
    void end() {
        {
            const std::lock_guard lock(mutex_);
            ended_ = true;
            changed_.notify_one();
        }
        const std::lock_guard lock(telling_);
        isHeard_ = false;
    }
    void run() {
        while (const auto question = next()) {
            ViewAnswer answer = drawn(question->second);
            if (hasEnded()) break; // and is not painted: the program may be about to end
            answer.question = question->first;
            if (const auto tell = listener_(answer)) {
                const std::lock_guard lock(telling_);
                if (isHeard_) tell();
            }
            if (answer.outcome == Outcome::stopped) break;
        }
        artist_.reset(); // here, since it waits for the end of the process
    }

  private:
    using Numbered = std::pair<std::uint64_t, DrawingQuestion>;

    std::optional<Numbered> next() {
        std::unique_lock lock(mutex_);
        changed_.wait(lock, [this] { return ended_ || waiting_; });
        return ended_ ? std::nullopt : std::exchange(waiting_, std::nullopt);
    }
    bool hasEnded() {
        const std::lock_guard lock(mutex_);
        return ended_;
    }
    ViewAnswer drawn(const DrawingQuestion& question) {
        const auto bytes = writeQuestion(question);
        if (!bytes) return {Outcome::stopped, 0, {}, bytes.error()};
        ViewAnswer answer;
        for (int tries = 0; tries < 2 && !hasEnded(); ++tries) {
            answer = {};
            if (!artist_) {
                artist_.emplace(limits_, [this] { return !hasEnded(); });
                if (const auto started = artist_->start(program_); !started) answer.why = started.error();
            }
            if (answer.why.empty()) answer = artist_->ask(bytes.value());
            if (answer.outcome != Outcome::stopped) break;
            artist_.reset();
        }
        return answer;
    }

    const Program program_;
    const Limits limits_;
    std::mutex mutex_; ///< over the question that waits, and the end
    std::condition_variable changed_;
    std::optional<Numbered> waiting_;
    std::uint64_t last_ = 0;
    bool ended_ = false;
    std::mutex telling_; ///< while something is told
    bool isHeard_ = true;
    const Listener listener_;
    std::optional<Artist> artist_; ///< the thread's own
};

ViewHost::ViewHost(std::filesystem::path bundle, Listener listener, const Limits& limits)
    : worker_(std::make_shared<Worker>(std::move(bundle), std::move(listener), limits)) {
    // The process dies with the thread that has started it, so the thread stays.
    try {
        std::thread([worker = worker_] { worker->run(); }).detach();
    } catch (const std::system_error&) { // without a thread there are no drawings
    }
}

ViewHost::~ViewHost() {
    worker_->end();
}

std::uint64_t ViewHost::draw(DrawingQuestion question) {
    return worker_->put(std::move(question));
}

} // namespace lumora
