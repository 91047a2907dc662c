#pragma once

#include "tweak/Log.h"
#include "tweak/SettingsStore.h"

#include <optional>
#include <string>
#include <vector>

namespace lumora {

/// Answers the two messages of the settings bundle from a store, which outlives it. Any thread.
class Tweak {
  public:
    struct Options {
        std::vector<std::string> omitted{}; ///< keys that every answer leaves out, as if they were not set
        bool verbose = false;               ///< a line in the log for each message
    };

    Tweak(SettingsStore& store, Options options, Log log);

    /// Answers "requestTweakSettings" with the keyed archive of the settings dictionary. A request needs no body.
    [[nodiscard]] std::optional<platform::Data> requestTweakSettings() const;

    /// Answers "updateSettings", whose body is a keyed archive of {"object": {"key": text, "object": value}}. The answer
    /// to a change that was made has no body. A refusal is a line in the log, and its answer is the keyed archive of
    /// {"error": the reason}. The bundle ignores both answers.
    [[nodiscard]] std::optional<platform::Data> updateSettings(const std::optional<platform::Data>& body);

  private:
    [[nodiscard]] platform::Result<void> applyChange(const std::optional<platform::Data>& body);

    SettingsStore& store_;
    Options options_;
    Log log_;
};

} // namespace lumora
