#pragma once

#include "link/Notify.h"
#include "platform/foundation/NSKeyedArchiver.h"
#include "platform/messaging/CFMessagePort.h"

#include <condition_variable>
#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace tests {

/// A tweak in this process, on real sockets in a ports folder of its own: answers with the settings it was given and
/// records the changes it is sent. There is one for each test program, since a port serves as long as its process.
class RecordingTweak {
  public:
    static RecordingTweak& shared() {
        static auto& tweak = *new RecordingTweak;
        return tweak;
    }

    void setSettings(platform::Value settings) {
        const std::lock_guard hold(mutex_);
        settings_ = std::move(settings);
        changes_.clear();
    }

    /// Waits until so many changes have come, and gives them.
    std::vector<platform::Value> waitForChanges(std::size_t count) {
        std::unique_lock hold(mutex_);
        changed_.wait(hold, [&] { return changes_.size() >= count; });
        return changes_;
    }

  private:
    RecordingTweak() {
        std::string folder = (std::filesystem::path(testing::TempDir()) / "lumora.XXXXXX").string();
        if (!mkdtemp(folder.data())) std::abort();
        setenv("LUMORA_PORTS", folder.c_str(), 1);
        lumora::port("requestTweakSettings", [this](auto&, auto, const auto&) {
            const std::lock_guard hold(mutex_);
            return platform::NSKeyedArchiver::archivedDataWithRootObject(settings_);
        });
        lumora::port("updateSettings", [this](auto&, auto, const auto& body) -> std::optional<platform::Data> {
            const std::lock_guard hold(mutex_);
            if (body) changes_.push_back(platform::NSKeyedUnarchiver::unarchiveObjectWithData(*body)["object"]);
            changed_.notify_all();
            return std::nullopt;
        });
        for (const char* name : {"com.nevo.lumora/requestTweakSettings", "com.nevo.lumora/updateSettings"})
            while (platform::CFMessagePortSendRequest(*platform::CFMessagePortCreateRemote(name), 0, std::nullopt, 1, 1,
                                                      nullptr) != 0)
                std::this_thread::yield();
    }

    std::mutex mutex_;
    std::condition_variable changed_;
    platform::Value settings_ = platform::Dictionary{};
    std::vector<platform::Value> changes_;
};

} // namespace tests
