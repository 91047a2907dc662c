#pragma once

#include "platform/foundation/Result.h"
#include "platform/foundation/Value.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace lumora {

/// What the control of a number can set.
struct Bounds {
    int least;
    int most;
};

/// A setting that the tweak knows: its preference key and its value until it is changed.
struct Setting {
    std::string key;
    platform::Value byDefault;
    std::optional<Bounds> bounds = {}; ///< of a number; the tweak keeps numbers beyond them
    bool secure = false;               ///< a passcode, shown as dots
};

/// Every setting that the tweak knows, in the order of the pages that edit them. All other keys belong to plug-ins. Any
/// thread.
[[nodiscard]] const std::vector<Setting>& knownSettings();

/// The setting of that key; null for a key of a plug-in. Any thread.
[[nodiscard]] const Setting* findSetting(std::string_view key);
/// True for the key of a passcode.
[[nodiscard]] bool isSecure(std::string_view key);
/// Whether there is text or data in the value of a plug-in's setting, which may be a passcode: its page alone knows what
/// is shown as dots.
[[nodiscard]] bool mayBeSecret(std::string_view key, const platform::Value& value);

/// All settings, where these are the ones that have been changed; those of plug-ins come last. Any thread.
[[nodiscard]] platform::Dictionary withDefaults(const platform::Dictionary& changed);

/// What the setting takes, in words: "true or false", "a finite number". Any thread.
[[nodiscard]] std::string_view wantedBy(const Setting& setting);

/// Succeeds if the setting can have the value, and else says why not: "takes a finite number, not a text".
///
/// A value must be of the kind of the setting's default. Integers and reals count as one kind and must be finite; the
/// control that sends a number decides which numbers make sense. A list holds texts, a colour is {"h", "s", "b"} with
/// three numbers in [0, 1]. Any thread.
[[nodiscard]] platform::Result<void> canHave(const Setting& setting, const platform::Value& value);

/// "the page sets kAppIconSize from 50 to 90", for a number that it cannot set; empty for all other values. Any thread.
[[nodiscard]] std::string beyondItsPage(const Setting& setting, const platform::Value& value);

/// A kind of value in words: "a text", "a list".
[[nodiscard]] std::string_view kindName(platform::Value::Kind kind);

} // namespace lumora
