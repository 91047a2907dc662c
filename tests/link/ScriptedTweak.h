#pragma once

#include "link/Messages.h"
#include "platform/foundation/NSKeyedArchiver.h"
#include "tests/support/ServedPort.h"
#include "tests/support/Waiting.h"

#include <condition_variable>
#include <functional>
#include <mutex>
#include <optional>
#include <vector>

namespace tests {

/// A tweak in this process, on real sockets: answers with what the test last gave it and keeps every request.
class ScriptedTweak {
  public:
    using Answer = std::function<std::optional<platform::Data>()>;

    explicit ScriptedTweak(Answer answer = nullptr) : answer_(std::move(answer)) {}
    explicit ScriptedTweak(const platform::Value& settings) { answerWith(settings); }

    /// What "requestTweakSettings" is answered with from now on. It may block, which holds up that port alone.
    void answerWith(Answer answer) {
        const std::lock_guard held(mutex_);
        answer_ = std::move(answer);
    }
    void answerWith(const platform::Value& settings) {
        answerWith([settings] { return platform::NSKeyedArchiver::archivedDataWithRootObject(settings); });
    }

    /// The bodies of all requests of that kind, once there are so many; fewer when they do not come.
    std::vector<std::optional<platform::Data>> requests(std::size_t count) { return wait(requests_, count); }
    std::vector<std::optional<platform::Data>> updates(std::size_t count) { return wait(updates_, count); }

  private:
    using Bodies = std::vector<std::optional<platform::Data>>;

    void keep(Bodies& bodies, const std::optional<platform::Data>& body) {
        const std::lock_guard held(mutex_);
        bodies.push_back(body);
        changed_.notify_all();
    }
    Bodies wait(const Bodies& bodies, std::size_t count) {
        std::unique_lock held(mutex_);
        changed_.wait_for(held, kLongEnough, [&] { return bodies.size() >= count; });
        return bodies;
    }
    Answer currentAnswer() {
        const std::lock_guard held(mutex_);
        return answer_;
    }

    std::mutex mutex_;
    std::condition_variable changed_;
    Answer answer_;
    Bodies requests_;
    Bodies updates_;
    ServedPort requestPort_{lumora::portName(lumora::kRequestTweakSettings),
                            [this](auto&, auto, const auto& body) -> std::optional<platform::Data> {
                                keep(requests_, body);
                                const auto answer = currentAnswer();
                                return answer ? answer() : std::nullopt;
                            }};
    ServedPort updatePort_{lumora::portName(lumora::kUpdateSettings),
                           [this](auto&, auto, const auto& body) -> std::optional<platform::Data> {
                               keep(updates_, body);
                               return std::nullopt;
                           }};
};

} // namespace tests
