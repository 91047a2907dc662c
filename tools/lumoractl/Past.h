#pragma once

#include "tools/lumoractl/TweakPast.h"

#include "platform/foundation/Result.h"
#include "platform/foundation/Value.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace lumora {

/// What the commands share that look back at the settings, or change several of them.

/// What a person names a place in the history by: a moment, or the revision of a change.
struct Landmark {
    Moment moment;
    std::optional<std::int64_t> revision; ///< counts if there is one
};
/// Fails for what is neither.
[[nodiscard]] platform::Result<Landmark> readLandmark(const std::string& text);
/// The place at a moment, or after a change. Says on standard error if the history does not reach back to it. Fails for a
/// time to come, and where nothing such is recorded.
[[nodiscard]] platform::Result<std::size_t> placeOf(const Timeline& timeline, const Landmark& landmark);

/// Now, as records have it.
[[nodiscard]] Moment momentNow();

/// Words as one text.
[[nodiscard]] std::string joined(const std::vector<std::string>& words);

/// "10", "\"text\"", "not set", at most so long that a few fit on a line. A secure value is dots.
[[nodiscard]] std::string shortText(const std::string& key, const std::optional<platform::Value>& value);
/// "kSleepTime: 10 → 30", or "kAutoUnlockPasscode: changed".
[[nodiscard]] std::string changeText(const ChangeRecord& record);

/// A setting that is to have another value.
struct Intent {
    std::string key;
    std::optional<platform::Value> before;
    platform::Value after;
};
/// Makes the changes, with a message for each, and prints a line for each that is made; or only prints them. The status
/// says whether the tweak has taken all of them; what it refuses is told. Ends where no tweak answers any more.
[[nodiscard]] int carryOut(const std::vector<Intent>& intents, bool onlyTold);

inline constexpr const char* kNoHistory = "the tweak offers no history";
inline constexpr const char* kNoDefaults = "the tweak does not tell its defaults";

} // namespace lumora
