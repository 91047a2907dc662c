#pragma once

#include "platform/foundation/Result.h"
#include "platform/foundation/Value.h"

#include <optional>
#include <string>

namespace lumora {

/// The settings of the tweak, asked for and changed by a program that reports how it went. The messages and their
/// time-outs are the settings bundle's own.

/// The settings dictionary.
[[nodiscard]] platform::Result<platform::Dictionary> fetchSettings();

/// Changes one setting. Fails in the tweak's own words where it refuses; a tweak that gives no reasons is taken at its
/// word.
[[nodiscard]] platform::Result<void> changeSetting(const std::string& key, const platform::Value& value);

/// The same; where no answer comes in time, the settings tell whether the change was made. Gives the reason for one that
/// was not, and fails where no tweak answers any more.
[[nodiscard]] platform::Result<std::optional<std::string>> tryChange(const std::string& key,
                                                                     const platform::Value& value);

/// The answer to a message that a tweak may be without, whose body is about the object, or which has none if that is nil.
/// Nothing where a tweak answers that does not offer it; nil where it has no answer.
[[nodiscard]] platform::Result<std::optional<platform::Value>> askOptional(const std::string& message,
                                                                           const platform::Value& object = nullptr);

/// What to tell a person where no tweak answers: that, or why programs do not meet in the ports folder.
[[nodiscard]] std::string whyNoTweakAnswers();

/// What is shown of a setting unless its secret is asked for: dots in place of a passcode. No passcode is no secret.
[[nodiscard]] platform::Value shownValue(const std::string& key, const platform::Value& value);

} // namespace lumora
