#pragma once

#include "link/Messages.h"
#include "platform/foundation/NSKeyedArchiver.h"
#include "platform/messaging/Dispatch.h"
#include "tests/support/PortsFolder.h"
#include "tests/support/ServedPort.h"
#include "tests/support/Waiting.h"

#include <condition_variable>
#include <cstdio>
#include <mutex>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace tests {

/// A tweak in this process, on real sockets in a ports folder of its own: answers with the settings it was given and
/// records the changes it is sent. There is one for each test program, because the folder stands in the environment,
/// which workers read.
class RecordingTweak {
  public:
    static RecordingTweak& shared() {
        static RecordingTweak tweak;
        return tweak;
    }
    RecordingTweak(const RecordingTweak&) = delete;
    RecordingTweak& operator=(const RecordingTweak&) = delete;

    void setSettings(platform::Value settings) {
        const std::lock_guard hold(mutex_);
        settings_ = std::move(settings);
        changes_.clear();
    }

    /// Waits until so many changes have come, and gives them. Throws when they do not come.
    std::vector<platform::Value> waitForChanges(std::size_t count) {
        std::unique_lock hold(mutex_);
        if (!changed_.wait_for(hold, kLongEnough, [&] { return changes_.size() >= count; }))
            throw std::runtime_error(std::to_string(changes_.size()) + " changes came, not " + std::to_string(count));
        return changes_;
    }

    /// Waits until no message is under way any more. Throws when they do not end.
    static void waitUntilIdle() {
        if (!platform::dispatch_wait_until_idle(kLongEnough)) throw std::runtime_error("messages do not end");
    }

    /// All changes, once no message is under way any more.
    std::vector<platform::Value> changes() {
        waitUntilIdle();
        const std::lock_guard hold(mutex_);
        return changes_;
    }

    /// Answers to who asks for the settings are held back until they are let go.
    void holdAnswers(bool held) {
        const std::lock_guard hold(mutex_);
        held_ = held;
        changed_.notify_all();
    }

    /// How often the settings were asked for.
    int requests() {
        const std::lock_guard hold(mutex_);
        return requested_;
    }

  private:
    RecordingTweak() = default;

    std::optional<platform::Data> settings() {
        std::unique_lock hold(mutex_);
        ++requested_;
        if (!changed_.wait_for(hold, kLongEnough, [&] { return !held_; }))
            std::fputs("an answer that is held back was never let go\n", stderr);
        return platform::NSKeyedArchiver::archivedDataWithRootObject(settings_);
    }

    std::optional<platform::Data> record(const std::optional<platform::Data>& body) {
        const std::lock_guard hold(mutex_);
        if (body) changes_.push_back(platform::NSKeyedUnarchiver::unarchiveObjectWithData(*body)[lumora::kObjectEntry]);
        changed_.notify_all();
        return std::nullopt;
    }

    std::mutex mutex_;
    std::condition_variable changed_;
    platform::Value settings_ = platform::Dictionary{};
    std::vector<platform::Value> changes_;
    int requested_ = 0;
    bool held_ = false;
    PortsFolder folder_;
    ServedPort requests_{lumora::portName(lumora::kRequestTweakSettings),
                         [this](auto&, auto, const auto& /*body*/) { return settings(); }};
    ServedPort updates_{lumora::portName(lumora::kUpdateSettings),
                        [this](auto&, auto, const auto& body) { return record(body); }};
};

} // namespace tests
