#include "Peer.h"

namespace tests {

namespace {

std::vector<std::string> command(const std::string& name, const std::vector<std::string>& arguments) {
    std::vector<std::string> command{std::string(LUMORA_PEERS) + "/" + name + "_peer"};
    if (name == "plistlib") command = {PYTHON, LUMORA_SOURCE "/tests/interop/peers/plistlib_peer.py"};
    command.insert(command.end(), arguments.begin(), arguments.end());
    return command;
}

} // namespace

Peer::Peer(const std::string& name, const std::vector<std::string>& arguments) : process_(command(name, arguments)) {
}

std::string Peer::ask(const std::string& line) const {
    process_.write(line);
    const std::string answer = process_.read();
    return answer.empty() ? "! it has ended" : answer;
}

} // namespace tests
