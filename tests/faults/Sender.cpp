// The bundle's side of the ports in a process of its own: sends messages as its pages do, and tells what came of them.
//
// Each line of standard input is "COUNT NAME...": so many messages of each name, at once. When all are done a line says
// how many replies there were.
#include "link/Notify.h"

#include "platform/messaging/Dispatch.h"

#include <atomic>
#include <chrono>
#include <iostream>
#include <sstream>
#include <string>

using platform::Dictionary;
using platform::Value;

namespace {

std::atomic<int> replies;

void send(const std::string& name) {
    const bool change = name == "updateSettings";
    const Value object = change ? Value(Dictionary{{"key", "kSleepTime"}, {"object", 30}}) : Value();
    lumora::notify(name, object, [](const auto&) { ++replies; });
}

} // namespace

int main() {
    std::string line;
    while (std::getline(std::cin, line)) {
        std::istringstream words(line);
        int count = 0;
        words >> count;
        replies = 0;
        for (std::string name; words >> name;)
            for (int i = 0; i < count; ++i)
                send(name);
        if (!platform::dispatch_wait_until_idle(std::chrono::minutes(1))) return 1;
        std::cout << replies << std::endl;
    }
    return 0;
}
