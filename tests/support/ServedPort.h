#pragma once

#include "platform/messaging/CFMessagePort.h"
#include "platform/messaging/CFRunLoop.h"
#include "tests/support/Waiting.h"

#include <future>
#include <string>
#include <thread>
#include <utility>

namespace tests {

/// A local port served by a thread of its own, from construction to destruction.
class ServedPort {
  public:
    ServedPort(const std::string& name, platform::CFMessagePortCallBack callout) {
        std::promise<platform::CFRunLoopRef> opened;
        auto loop = opened.get_future();
        thread_ = std::thread([&opened, name, callout = std::move(callout)]() mutable {
            const auto port = platform::CFMessagePortCreateLocal(name, std::move(callout));
            platform::CFRunLoopAddSource(platform::CFRunLoopGetCurrent(), CFMessagePortCreateRunLoopSource(port));
            opened.set_value(port ? platform::CFRunLoopGetCurrent() : nullptr);
            platform::CFRunLoopRun();
        });
        loop_ = awaited(std::move(loop), "the port " + name);
    }
    ~ServedPort() {
        if (loop_) platform::CFRunLoopStop(loop_);
        thread_.join();
    }
    ServedPort(const ServedPort&) = delete;
    ServedPort& operator=(const ServedPort&) = delete;

    /// Whether the name was free.
    [[nodiscard]] bool isOpen() const { return loop_ != nullptr; }

  private:
    platform::CFRunLoopRef loop_;
    std::thread thread_;
};

} // namespace tests
