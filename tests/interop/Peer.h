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
    Peer(const std::string& name, const std::vector<std::string>& arguments) : process_(command(name, arguments)) {}

    /// The answer, or "!" and why there is none.
    [[nodiscard]] std::string ask(const std::string& line) const {
        process_.write(line);
        const std::string answer = process_.read();
        return answer.empty() ? "! it has ended" : answer;
    }

  private:
    static std::vector<std::string> command(const std::string& name, const std::vector<std::string>& arguments) {
        std::vector<std::string> command{LUMORA_PEERS "/" + name + "_peer"};
        if (name == "plistlib") command = {PYTHON, LUMORA_SOURCE "/tests/interop/peers/plistlib_peer.py"};
        command.insert(command.end(), arguments.begin(), arguments.end());
        return command;
    }

    Process process_;
};

} // namespace tests
