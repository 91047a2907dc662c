#pragma once

#include "tweak/Followers.h"
#include "tweak/Log.h"
#include "tweak/SettingsStore.h"

#include <optional>
#include <string>
#include <vector>

namespace lumora {

/// Answers the two messages of the settings bundle, and those who follow the settings, from a store that outlives it.
/// Any thread.
class Tweak {
  public:
    struct Options {
        std::vector<std::string> omitted{}; ///< keys that every answer leaves out, as if they were not set
        bool verbose = false;               ///< a line in the log for each message
    };

    Tweak(SettingsStore& store, Options options, Log log);
    Tweak(const Tweak&) = delete;
    Tweak& operator=(const Tweak&) = delete;
    ~Tweak();

    /// Answers "requestTweakSettings" with the keyed archive of the settings dictionary. A request needs no body.
    [[nodiscard]] std::optional<platform::Data> requestTweakSettings() const;

    /// Answers "updateSettings", whose body is a keyed archive of {"object": {"key": text, "object": value}}. The answer
    /// to a change that was made has no body. A refusal is a line in the log, and its answer is the keyed archive of
    /// {"error": the reason}. The bundle ignores both answers.
    [[nodiscard]] std::optional<platform::Data> updateSettings(const std::optional<platform::Data>& body);

    /// Answers "followSettings", whose body is a keyed archive of {"object": {"port": "followers/PID-N"}}, with PID that
    /// of the sender: tells the follower of each change from now on, and answers with the settings and their revision. A
    /// refusal has no body, and is a line in the log.
    [[nodiscard]] std::optional<platform::Data> followSettings(const std::optional<platform::Data>& body, long sender);

  private:
    [[nodiscard]] platform::Dictionary answered() const;
    [[nodiscard]] platform::Result<void> applyChange(const std::optional<platform::Data>& body);

    SettingsStore& store_;
    Options options_;
    Log log_;
    Followers followers_;
};

} // namespace lumora
