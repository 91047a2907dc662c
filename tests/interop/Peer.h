#pragma once

#include "tests/support/Process.h"

#include <string>
#include <vector>

namespace tests {

/// Another implementation of keyed archives, in a process of its own.
///
///     Peer("plistlib", {"read"}).ask(hexOf(archive));   // "{ s6b6579 t }"
///
/// Its first argument says what it does with each line that it is asked:
///
///     read    archive in hexadecimal -> form of its value
///     again   archive -> the same value, archived by the peer
///     write   form -> archive
class Peer {
  public:
    Peer(const std::string& name, const std::vector<std::string>& arguments);

    /// The answer, or "!" and why there is none.
    [[nodiscard]] std::string ask(const std::string& line) const;

  private:
    Process process_;
};

} // namespace tests
