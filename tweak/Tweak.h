#pragma once

#include "tweak/Followers.h"
#include "tweak/History.h"
#include "tweak/Log.h"
#include "tweak/SettingsStore.h"

#include <optional>
#include <string>
#include <vector>

namespace lumora {

/// Answers the two messages of the settings bundle, and those of who follows the settings or looks back at them, from a
/// store and a history that outlive it. Any thread.
class Tweak {
  public:
    struct Options {
        std::vector<std::string> omitted{}; ///< keys that every answer leaves out, as if they were not set
        bool verbose = false;               ///< a line in the log for each message
    };

    /// Without a history, changes are not recorded. With one, the store's revisions are those of its records.
    Tweak(SettingsStore& store, Options options, Log log, History* history = nullptr);
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

    /// Answers "history", whose body is a keyed archive of {"object": {"since": revision}}, with {"revision": n, "records":
    /// […], "more": boolean}: the records that come after that revision. With {"clear": true} in it, forgets all of them
    /// first. A refusal has no body, and is a line in the log. Only with a history.
    [[nodiscard]] std::optional<platform::Data> history(const std::optional<platform::Data>& body);

    /// Answers "defaults" with the keyed archive of a dictionary from the key of each setting that is no passcode to its
    /// value until it is changed. A request needs no body.
    [[nodiscard]] std::optional<platform::Data> defaults() const;

  private:
    [[nodiscard]] bool isOmitted(const std::string& key) const;
    [[nodiscard]] platform::Dictionary answered() const;
    [[nodiscard]] platform::Result<void> applyChange(const std::optional<platform::Data>& body);

    SettingsStore& store_;
    Options options_;
    Log log_;
    History* history_;
    Followers followers_;
};

} // namespace lumora
