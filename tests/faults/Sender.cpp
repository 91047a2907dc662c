// The bundle's side of the ports in a process of its own: sends messages as its pages do, and tells what came of them.
//
// Each line of standard input is "COUNT NAME...": so many messages of each name, at once. When all are done a line says
// how many replies there were. Or it is "open", which starts a settings session as a page does when it is opened; when
// its request is done a line says what such a page reads as "kSleepTime", and that is 0 for nothing.
#include "link/Messages.h"
#include "link/Notify.h"
#include "link/SettingsSession.h"

#include "platform/messaging/Dispatch.h"

#include <atomic>
#include <chrono>
#include <iostream>
#include <sstream>
#include <string>

using platform::Value;

namespace {

struct Page; // which has the session

std::atomic<int> replies;

void send(const std::string& name) {
    const bool change = name == lumora::kUpdateSettings;
    const Value object = change ? Value(lumora::changeOf("kSleepTime", 30)) : Value();
    lumora::notify(name, object, [](const auto&) { ++replies; });
}

void sendAll(const std::string& line) {
    std::istringstream words(line);
    int count = 0;
    words >> count;
    replies = 0;
    for (std::string name; words >> name;)
        for (int i = 0; i < count; ++i)
            send(name);
}

} // namespace

int main() {
    auto& session = lumora::sessionOf<Page>();
    std::string line;
    while (std::getline(std::cin, line)) {
        const bool opens = line == "open";
        if (opens) {
            session.start();
        } else {
            sendAll(line);
        }
        if (!platform::dispatch_wait_until_idle(std::chrono::minutes(1))) return 1;
        std::cout << (opens ? session.value("kSleepTime").integer().value_or(0) : replies.load()) << std::endl;
    }
    return 0;
}
