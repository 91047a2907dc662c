#pragma once

#include "Differences.h"
#include "Peer.h"

#include <string>
#include <vector>

namespace tests {

/// What repeats a run; printed by each test. `--seed N` and `--values N` set them.
struct Run {
    static inline unsigned seed = 0;
    static inline unsigned values = LUMORA_INTEROP_VALUES;
};

/// Exchanges values with another implementation and reports each that arrives changed, with all that it takes to look
/// into it: seed, index, peer, direction, the value and the archive's bytes.
///
///     Exchange exchange("plistlib", {"read"});
///     exchange.send(value, "many entries");   // one expectation
///
/// The first argument gives the way: our archive is read by the peer ("read"); it is archived by the peer anew and read
/// by us ("again"); the peer's archive is read by us ("write").
class Exchange {
  public:
    Exchange(const std::string& peer, const std::vector<std::string>& arguments)
        : peerName_(peer), mode_(arguments.front()), peer_(peer, arguments) {
        for (const std::string& argument : arguments)
            way_ += (way_.empty() ? "" : " ") + argument;
    }

    void send(const platform::Value& value, const std::string& index);
    /// After some failures more of them tell nothing new.
    [[nodiscard]] bool hasFailedOften() const { return failures_ >= 3; }

  private:
    /// What a value is like with the differences of that effect that lie on the way.
    [[nodiscard]] platform::Value normalised(const platform::Value& value, Difference::Effect effect) const;

    std::string peerName_;
    std::string mode_;
    std::string way_; ///< all arguments, as Difference has them
    Peer peer_;
    unsigned failures_ = 0;
};

/// The form of what we read in an archive in hexadecimal, or "!" and why there is none. Other answers stay.
[[nodiscard]] std::string formOfArchive(const std::string& answer);

/// Random values, one after the other, in one process of the peer. Prints the seed.
void exchangeRandomValues(const std::string& peer, const std::vector<std::string>& arguments, unsigned count);

} // namespace tests
