#pragma once

#include "tweak/Log.h"
#include "tweak/SettingsStore.h"

#include <optional>
#include <string>
#include <vector>

namespace lumora {

/// Answers the two messages of the settings bundle from a store. Any thread.
class Tweak {
  public:
    struct Options {
        std::vector<std::string> omitted{}; ///< keys that every answer leaves out, as if they were not set
        bool verbose = false;               ///< a line in the log for each message
    };

    Tweak(SettingsStore& store, Options options, Log log);

    /// "requestTweakSettings": the keyed archive of the settings dictionary. The body of the request is ignored.
    [[nodiscard]] std::optional<platform::Data> requestTweakSettings() const;

    /// "updateSettings": the body is a keyed archive of {"object": {"key": text, "object": value}}. The answer to a
    /// change that is made has no body. A refusal is a line in the log and the keyed archive of {"error": that line}.
    /// The bundle ignores both answers.
    [[nodiscard]] std::optional<platform::Data> updateSettings(const std::optional<platform::Data>& body);

  private:
    [[nodiscard]] platform::Result<void> applyChange(const std::optional<platform::Data>& body);

    SettingsStore& store_;
    Options options_;
    Log log_;
};

} // namespace lumora
