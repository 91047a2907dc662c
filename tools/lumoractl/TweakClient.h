#pragma once

#include "platform/foundation/Result.h"
#include "platform/foundation/Value.h"

#include <string>

namespace lumora {

/// The settings of the tweak, asked for and changed by a program that reports how it went. The messages and their
/// time-outs are the settings bundle's own.

/// The settings dictionary.
[[nodiscard]] platform::Result<platform::Dictionary> fetchSettings();

/// Changes one setting. Fails in the tweak's own words where it refuses; a tweak that gives no reasons is taken at its
/// word.
[[nodiscard]] platform::Result<void> changeSetting(const std::string& key, const platform::Value& value);

} // namespace lumora
