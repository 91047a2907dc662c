#pragma once

#include "platform/Export.h"
#include "platform/foundation/ChildProcess.h"
#include "platform/foundation/Result.h"
#include "platform/foundation/Value.h"

#include <chrono>
#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace platform {

/// The kinds of strangers' code, which is tried in another process before this one loads it.
enum class ForeignCode : char { plugin = 'p', applicationList = 'a' };

/// How long one trial may take, by the clock and in processor time.
struct ProbeLimits {
    std::chrono::milliseconds clock{10'000};
    std::chrono::milliseconds processor{2'000};
    int stop = -1; ///< a file; once it can be read, nobody waits for what is still to be tried
};

/// What of the machine a process may take in which strangers' code runs.
inline constexpr ChildLimits kForeignCodeLimits{.memory = std::uint64_t{4} << 30, .descriptors = 1024};

/// What came of one trial.
struct Probed {
    /// The letters are those of the probe's answers, and of the verdicts that are kept on disk.
    enum class Verdict : char {
        safe = 's',      ///< the code does its process no harm; it may still be of no use
        dangerous = 'd', ///< the code ends or damages its process
        undecided = 'u', ///< the code took too long, was killed or could not be read, and may pass another time
        untried = '-',   ///< there is no process in which to try the code
    };
    Verdict verdict = Verdict::untried;
    std::string why;     ///< unless the code is safe
    Dictionary told;     ///< what the report has, if it is safe and one beyond verdicts was asked for
    std::string printed; ///< the beginning of what it printed, if it had a process to itself
};

/// Whether the probe only gives verdicts, on many in one process, or also tells what each answers, in a process of its
/// own; or judges each, in copies of a process of its own, to which the limit in processor time does not apply.
enum class ProbeReport : char { verdict = 'v', answers = 'a', judgement = 'j' };

/// The probe's word that it is ready, before it gives a verdict on each.
inline constexpr char kReadyAnswer = 'r';

/// Has `lumora-probe` load the code at each path and ask it everything that this process would ask. Code that ends the
/// probe or takes too long spoils only its own trial: another probe goes on behind it. Code that fails after other code
/// is tried again without that.
///
///     for (const Probed& plugin : probe(ForeignCode::plugin, bundles, ProbeReport::answers, {})) …
///
/// The results come in the order of the paths. Waits for all of them; any thread.
[[nodiscard]] PLATFORM_EXPORT std::vector<Probed>
probe(ForeignCode kind, const std::vector<std::filesystem::path>& paths, ProbeReport report, const ProbeLimits& limits);

/// What is being tried just now: of several, the one begun first; empty for nothing. Any thread.
[[nodiscard]] PLATFORM_EXPORT std::filesystem::path beingTried();

/// What an answer has to begin with, so that nothing that strangers' code writes by chance is taken for one. Any thread.
[[nodiscard]] PLATFORM_EXPORT std::string newProbeToken();

/// The line that the probe writes ahead of each answer of `length` bytes.
[[nodiscard]] PLATFORM_EXPORT std::string probeAnswerLine(const std::string& token, std::size_t index, char answer,
                                                          std::size_t length);

struct ProbeAnswer {
    char answer = 0; ///< one of those that are expected
    std::string text;
};

/// Takes the answer of that index off the front of what a probe has written; nothing while more must come. Fails for bytes
/// that are no such answer, or for one that is longer than `most`. Any thread.
[[nodiscard]] PLATFORM_EXPORT Result<std::optional<ProbeAnswer>>
takeProbeAnswer(std::string& unread, const std::string& token, std::size_t index, std::string_view expected,
                std::size_t most);

} // namespace platform
