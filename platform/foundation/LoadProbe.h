#pragma once

#include "platform/Export.h"
#include "platform/foundation/Value.h"

#include <chrono>
#include <filesystem>
#include <string>
#include <vector>

namespace platform {

/// What is a stranger's code, and so is tried in another process before it is loaded into this one.
enum class ForeignCode : char { plugin = 'p', applicationList = 'a' };

/// How long one may take, by the clock and of processor time.
struct ProbeLimits {
    std::chrono::milliseconds clock{10'000};
    std::chrono::milliseconds processor{2'000};
};

/// What came of trying one.
struct Probed {
    /// The letters are those of the probe's answers, and of the verdicts that are kept on disk.
    enum class Verdict : char {
        safe = 's',      ///< it leaves its process alone, which is not to say that it is any good
        dangerous = 'd', ///< it ends or damages the process that it is in
        undecided = 'u', ///< it took too long, was killed or could not be read, and may pass another time
        untried = '-',   ///< there is no process to try it in
    };
    Verdict verdict = Verdict::untried;
    std::string why;     ///< unless it is safe
    Dictionary told;     ///< what it answers, if it is safe and that was asked for
    std::string printed; ///< the beginning of what it printed, if it had a process for itself
};

/// Whether the probe only tries all, many in one process, or tells what each answers, in a process of its own.
enum class ProbeReport : char { verdict = 'v', answers = 'a' };

/// How the probe says that it is ready, before it gives a verdict on each.
inline constexpr char kReadyAnswer = 'r';

/// Has `lumora-probe` load each and ask it all that this process would ask. One that ends the probe or takes too long
/// costs only itself: another probe goes on behind it. One that fails behind others is tried again without them.
///
///     for (const Probed& plugin : probe(ForeignCode::plugin, bundles, ProbeReport::answers, {})) …
///
/// Waits; any thread.
[[nodiscard]] PLATFORM_EXPORT std::vector<Probed>
probe(ForeignCode kind, const std::vector<std::filesystem::path>& paths, ProbeReport report, const ProbeLimits& limits);

/// The line that the probe writes ahead of each answer of `length` bytes.
[[nodiscard]] PLATFORM_EXPORT std::string probeAnswerLine(const std::string& token, std::size_t index, char answer,
                                                          std::size_t length);

} // namespace platform
