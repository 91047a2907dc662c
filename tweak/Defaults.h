#pragma once

#include "platform/foundation/Result.h"
#include "platform/foundation/Value.h"

#include <string>
#include <string_view>
#include <vector>

namespace lumora {

/// A setting that the tweak knows: its preference key and its value until it is changed.
struct Setting {
    std::string key;
    platform::Value byDefault;
    bool secure = false; ///< a passcode, shown as dots
};

/// Every setting that the tweak knows, in the order of the pages that edit them. All other keys belong to plug-ins. Any
/// thread.
[[nodiscard]] const std::vector<Setting>& knownSettings();

/// Null for a key of a plug-in.
[[nodiscard]] const Setting* findSetting(std::string_view key);
[[nodiscard]] bool isSecure(std::string_view key);

/// Whether the setting can have the value, or why not, as "takes a number, not a text".
///
/// A value must be of the kind of the setting's default. Integers and reals count as one kind, finite ones only; which
/// numbers make sense is the business of the control that sends them. A list holds texts, a colour is {"h", "s", "b"}
/// with three numbers in [0, 1].
[[nodiscard]] platform::Result<void> canHave(const Setting& setting, const platform::Value& value);

/// The kind of a value in words: "a text", "a list".
[[nodiscard]] std::string_view kindName(platform::Value::Kind kind);

} // namespace lumora
