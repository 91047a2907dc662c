#pragma once

#include "platform/foundation/Result.h"
#include "search/Index.h"
#include "search/IndexFile.h"

#include <chrono>
#include <filesystem>
#include <functional>
#include <optional>
#include <stop_token>
#include <string>
#include <vector>

namespace search {

/// The `lumora-settings` beside the program that runs, which may be missing. Any thread.
[[nodiscard]] std::filesystem::path standardProgram();

/// How an index is made.
struct IndexOrder {
    std::filesystem::path program = standardProgram();
    std::filesystem::path root;                    ///< the device root; empty for the program's own
    std::filesystem::path bundle;                  ///< the settings bundle
    std::chrono::milliseconds forPage{2'000};      ///< what one page may take, by the clock and in processor time
    std::chrono::milliseconds forAll{20'000};      ///< the same for all pages
    std::size_t mostBytes = std::size_t{16} << 20; ///< of all that the program may say
};

/// What the index is made from, for stampOf().
[[nodiscard]] Sources sourcesOf(const IndexOrder& order);

/// An index, and what it lacks.
struct MadeIndex {
    Index index;
    std::vector<std::string> missing; ///< a line for each page that is left out, and why
    bool whole = true;                ///< the walk came to its end: what is missing would be missing again
};

/// Makes an index with `lumora-settings --index`, in a process that no tweak hears of. A page at which that process ends
/// or hangs costs its own rows only: another process goes on behind it. `known` is called with what is known so far
/// whenever that has grown; on the calling thread, as everything here. Ends early, with a failure, when a stop is
/// requested. Fails too when no page can be read at all.
///
/// Waits for all of it: not for a thread that draws. The process dies with the thread that called.
[[nodiscard]] platform::Result<MadeIndex>
makeIndex(const IndexOrder& order, const std::function<void(const Index&)>& known = {}, std::stop_token stop = {});

/// makeIndex(), and the result replaces the user's file; it counts as out of date unless it is whole. A file that cannot
/// be written is no failure.
[[nodiscard]] platform::Result<MadeIndex> makeAndKeepIndex(const IndexOrder& order,
                                                           const std::function<void(const Index&)>& known = {},
                                                           std::stop_token stop = {});

} // namespace search
