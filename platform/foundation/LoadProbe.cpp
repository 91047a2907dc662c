#include "platform/foundation/LoadProbe.h"

#include "platform/foundation/ChildProcess.h"
#include "platform/foundation/DeviceRoot.h"
#include "platform/foundation/HelperProgram.h"
#include "platform/foundation/PropertyList.h"

#include <algorithm>
#include <charconv>
#include <csignal>
#include <cstddef>
#include <cstring>
#include <list>
#include <mutex>
#include <optional>
#include <random>
#include <string_view>
#include <sys/wait.h>
#include <thread>

namespace platform {
namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;
using Heard = ChildProcess::Heard;
using Verdict = Probed::Verdict;

/// What a command line may hold everywhere, with room to spare.
constexpr std::size_t kMostArguments = std::size_t{100} << 10;
/// The longest answer of a probe, which shortens texts so that it stays below.
constexpr std::size_t kMostTold = std::size_t{1} << 20;
constexpr std::size_t kLongestLine = 100;
constexpr auto kToStart = 10s;
constexpr const char* kScribbles = "it writes into files that are not its own";

/// Why a process that ended by itself did so.
std::string howItEnded(int status) {
    if (WIFSIGNALED(status)) return std::string("it crashes: ") + ::strsignal(WTERMSIG(status));
    return "it ends the process, with exit status " + std::to_string(WEXITSTATUS(status));
}

/// A process that is killed may have done so itself, or the system has for want of memory.
Verdict verdictOnEnd(int status) {
    return WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL ? Verdict::undecided : Verdict::dangerous;
}

/// All that is being tried, in the order in which that has begun. Never destroyed.
struct Trials {
    static Trials& all() {
        static auto& trials = *new Trials;
        return trials;
    }
    std::mutex mutex;
    std::list<fs::path> paths;
};

/// Of one path, while it lives.
class Trial {
  public:
    explicit Trial(const fs::path& path) {
        const std::lock_guard held(Trials::all().mutex);
        place_ = Trials::all().paths.insert(Trials::all().paths.end(), path);
    }
    Trial(const Trial&) = delete;
    Trial& operator=(const Trial&) = delete;
    ~Trial() {
        const std::lock_guard held(Trials::all().mutex);
        Trials::all().paths.erase(place_);
    }

  private:
    std::list<fs::path>::iterator place_;
};

/// One probe on its way along the paths.
class Walk {
  public:
    Walk(std::unique_ptr<ChildProcess> child, std::string token, const ProbeLimits& limits)
        : child_(std::move(child)), token_(std::move(token)), limits_(limits) {}

    /// True once the probe is ready to load what it was given.
    bool begins() {
        const auto patience = child_->patience(kToStart, kToStart, limits_.stop);
        const std::string ready = probeAnswerLine(token_, 0, kReadyAnswer, 0);
        while (unread_.size() < ready.size() && child_->receive(unread_, ready.size(), patience) == Heard::something) {
        }
        return std::exchange(unread_, {}) == ready;
    }

    /// What the probe says of the path that is due, or what became of the probe.
    Probed next(std::size_t index) {
        const auto patience = child_->patience(limits_.clock, limits_.processor, limits_.stop);
        for (;;) {
            const Result<std::optional<Probed>> answer = takeAnswer(index);
            if (!answer) return dead(Verdict::dangerous, answer.error());
            if (answer.value()) return *answer.value();
            Heard heard = child_->receive(unread_, kMostTold + kLongestLine, patience);
            if (heard == Heard::end) heard = child_->awaitEnd(patience); // it may have closed its output and go on
            if (heard == Heard::end) return dead(verdictOnEnd(child_->end()), howItEnded(child_->end()));
            if (heard == Heard::tooLate) return dead(Verdict::undecided, hangs(limits_.clock, ""));
            if (heard == Heard::tooCostly)
                return dead(Verdict::undecided, hangs(limits_.processor, " of processor time"));
        }
    }

  private:
    static std::string hangs(std::chrono::milliseconds limit, const char* of) {
        return "it hangs: no answer within " + std::to_string(limit.count()) + " ms" + of;
    }
    Probed dead(Verdict verdict, std::string why) {
        child_->end();
        return {verdict, std::move(why), {}, child_->printed()};
    }

    /// Nothing while more must come. Fails for bytes that are no answer.
    Result<std::optional<Probed>> takeAnswer(std::size_t index) {
        using Answer = Result<std::optional<Probed>>;
        const auto taken = takeProbeAnswer(unread_, token_, index, "sdu", kMostTold);
        if (!taken) return Answer::failure(taken.error());
        if (!taken.value()) return {std::nullopt};
        const auto& [answer, text] = *taken.value();
        Probed probed{static_cast<Verdict>(answer), {}, {}, child_->printed()};
        const bool safe = probed.verdict == Verdict::safe;
        if (!safe) probed.why = text;
        if (!safe || text.empty()) return {probed};
        const Result<Value> told = readPropertyList(Data(text.begin(), text.end()));
        if (told && told.value().dictionary()) probed.told = *told.value().dictionary();
        if (probed.told.empty()) return Answer::failure(kScribbles);
        return {probed};
    }

    std::unique_ptr<ChildProcess> child_;
    std::string token_;
    ProbeLimits limits_;
    std::string unread_;
};

/// Tries a part of the paths, one probe after the other.
class Errand {
  public:
    Errand(ForeignCode kind, ProbeReport report, const ProbeLimits& limits)
        : kind_(kind), report_(report), limits_(limits) {}

    /// Fills the results from a first path to a last one, exclusive.
    void run(const std::vector<fs::path>& paths, std::size_t first, std::size_t last,
             std::vector<Probed>& results) const {
        while (first < last) {
            const std::size_t end = std::min(last, first + count(paths, first));
            const std::string token = newProbeToken();
            auto child = start(paths, first, end, token);
            std::string why = child ? "lumora-probe does not begin" : child.error();
            if (child) {
                Walk walk(std::move(child).value(), token, limits_);
                if (walk.begins()) {
                    first = follow(walk, paths, first, end, results);
                    continue;
                }
            }
            for (; first < last; ++first)
                results[first].why = "it could not be tried: " + why;
        }
    }

  private:
    /// As many as fit into one command line.
    [[nodiscard]] std::size_t count(const std::vector<fs::path>& paths, std::size_t first) const {
        if (report_ != ProbeReport::verdict) return 1;
        std::size_t bytes = 0;
        std::size_t count = 0;
        for (; first + count < paths.size() && (count == 0 || bytes < kMostArguments); ++count)
            bytes += paths[first + count].native().size() + 1;
        return count;
    }
    [[nodiscard]] Result<std::unique_ptr<ChildProcess>> start(const std::vector<fs::path>& paths, std::size_t first,
                                                              std::size_t end, const std::string& token) const {
        std::vector<std::string> command{helperProgram("lumora-probe").string(), token, deviceRoot().string(),
                                         std::string{static_cast<char>(kind_)},
                                         std::string{static_cast<char>(report_)}};
        command.insert(command.end(), paths.begin() + std::ptrdiff_t(first), paths.begin() + std::ptrdiff_t(end));
        return ChildProcess::start(command, kForeignCodeLimits);
    }
    /// The first that this probe has not decided.
    static std::size_t follow(Walk& walk, const std::vector<fs::path>& paths, std::size_t first, std::size_t end,
                              std::vector<Probed>& results) {
        for (std::size_t at = first; at < end; ++at) {
            const Trial trial(paths[at]);
            Probed result = walk.next(at - first);
            const bool passed = result.verdict == Verdict::safe;
            // One that was loaded before may be to blame, so this one has to do it again at the head of the next probe.
            if (!passed && at != first) return at;
            results[at] = std::move(result);
            if (!passed) return at + 1;
        }
        return end;
    }

    ForeignCode kind_;
    ProbeReport report_;
    ProbeLimits limits_;
};

} // namespace

std::string newProbeToken() {
    std::random_device random;
    std::string token;
    for (int i = 0; i < 16; ++i)
        token += "0123456789abcdef"[random() % 16];
    return token;
}

std::string probeAnswerLine(const std::string& token, std::size_t index, char answer, std::size_t length) {
    return token + " " + std::to_string(index) + " " + answer + " " + std::to_string(length) + "\n";
}

Result<std::optional<ProbeAnswer>> takeProbeAnswer(std::string& unread, const std::string& token, std::size_t index,
                                                   std::string_view expected, std::size_t most) {
    const auto scribble = [] { return Result<std::optional<ProbeAnswer>>::failure(kScribbles); };
    const std::size_t end = unread.find('\n');
    if (end == std::string::npos && unread.size() > kLongestLine) return scribble();
    if (end == std::string::npos) return {std::nullopt};
    const std::string line = unread.substr(0, end + 1);
    const std::size_t last = line.rfind(' ');
    std::size_t length = 0;
    if (last == std::string::npos || last == 0) return scribble();
    std::from_chars(line.data() + last + 1, line.data() + end, length);
    const char answer = line[last - 1];
    if (length > most || expected.find(answer) == std::string_view::npos ||
        line != probeAnswerLine(token, index, answer, length))
        return scribble();
    if (unread.size() < line.size() + length) return {std::nullopt};
    ProbeAnswer taken{answer, unread.substr(line.size(), length)};
    unread.erase(0, line.size() + length);
    return {std::move(taken)};
}

std::vector<Probed> probe(ForeignCode kind, const std::vector<fs::path>& paths, ProbeReport report,
                          const ProbeLimits& limits) {
    constexpr std::size_t many = 100; // are worth a second probe beside the first
    const Errand errand(kind, report, limits);
    std::vector<Probed> results(paths.size());
    const std::size_t half = paths.size() < many ? paths.size() : paths.size() / 2;
    std::jthread second;
    if (half < paths.size()) second = std::jthread([&] { errand.run(paths, half, paths.size(), results); });
    errand.run(paths, 0, half, results);
    return results;
}

fs::path beingTried() {
    const std::lock_guard held(Trials::all().mutex);
    return Trials::all().paths.empty() ? fs::path() : Trials::all().paths.front();
}

} // namespace platform
