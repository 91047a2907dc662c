// The bundle's side of the ports in a process of its own: sends messages as its pages do, and tells what came of them.
//
// Each line of standard input is "COUNT NAME": so many messages, at once, of that name. When all are done a line says
// how many replies there were.
#include "link/Notify.h"

#include "platform/messaging/Dispatch.h"

#include <atomic>
#include <chrono>
#include <iostream>
#include <string>

using platform::Dictionary;
using platform::Value;

int main() {
    static std::atomic<int> replies; // which a late reply block may still count
    int count = 0;
    std::string name;
    while (std::cin >> count >> name) {
        replies = 0;
        const bool change = name == "updateSettings";
        const Value object = change ? Value(Dictionary{{"key", "kSleepTime"}, {"object", 30}}) : Value();
        for (int i = 0; i < count; ++i)
            lumora::notify(name, object, [](const auto&) { ++replies; });
        if (!platform::dispatch_wait_until_idle(std::chrono::minutes(1))) return 1;
        std::cout << replies << std::endl;
    }
    return 0;
}
