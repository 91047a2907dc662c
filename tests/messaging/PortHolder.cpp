// port_holder NAME: a process that holds a port, for tests in which another process must.
// "open" opens and serves it and answers "opened" or "taken"; "close" answers "closed". Requests are answered with
// their own body. Ends with its input.

#include "platform/messaging/CFMessagePort.h"
#include "platform/messaging/CFRunLoop.h"

#include <future>
#include <iostream>
#include <string>
#include <thread>

int main(int count, char** arguments) {
    using namespace platform;
    if (count != 2) return 2;

    CFRunLoopRef loop;
    std::thread server;
    const auto close = [&] {
        if (loop) CFRunLoopStop(loop);
        if (server.joinable()) server.join();
        loop = nullptr;
    };
    for (std::string order; std::getline(std::cin, order);) {
        if (order == "open") {
            auto port = CFMessagePortCreateLocal(arguments[1], [](auto&, auto, const auto& body) { return body; });
            std::cout << (port ? "opened" : "taken") << std::endl;
            if (!port) continue;
            std::promise<CFRunLoopRef> running;
            auto started = running.get_future();
            server = std::thread([port = std::move(port), &running] {
                CFRunLoopAddSource(CFRunLoopGetCurrent(), CFMessagePortCreateRunLoopSource(port));
                running.set_value(CFRunLoopGetCurrent());
                CFRunLoopRun();
            });
            loop = started.get();
        } else {
            close();
            std::cout << "closed" << std::endl;
        }
    }
    close();
}
