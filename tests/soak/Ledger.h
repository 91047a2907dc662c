#pragma once

#include "tests/soak/Census.h"

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace tests {

/// What a process held in the course of some work, and whether that stayed flat.
///
///     Ledger ledger("settings", Ledger::Tolerance{.grownKb = 4096, .grownHeapKb = 256, .busy = 40});
///     ledger.begin(Census::ofSelf());   // at rest, once everything is warm
///     ledger.note(Census::ofSelf());    // in the midst of it
///     ledger.end(Census::ofSelf());     // at rest again
///     ledger.complaints();              // empty if it was flat
///
/// Flat means: from the first rest to the last, descriptors and threads have not grown, and memory by the tolerance at
/// most; in between, the work takes no more descriptors and threads than it may.
class Ledger {
  public:
    struct Tolerance {
        long grownKb = 0;     ///< resident memory, from the first rest to the last
        long grownHeapKb = 0; ///< heap in use, likewise
        long busy = 0;        ///< descriptors and threads that the work may take while it goes on
    };

    Ledger(std::string process, Tolerance tolerance) : process_(std::move(process)), tolerance_(tolerance) {}

    void begin(const Census& atRest);
    void note(const Census& census);
    void end(const Census& atRest);

    /// One line for each quantity: first, last and largest.
    [[nodiscard]] std::string table() const;
    /// One line for each quantity that was not flat. That nothing was counted at all is one, too.
    [[nodiscard]] std::vector<std::string> complaints() const;

  private:
    std::string process_;
    Tolerance tolerance_;
    std::optional<Census> first_;
    std::optional<Census> last_;
    Census largest_;
};

} // namespace tests
