#pragma once

#include "platform/foundation/Value.h"

#include <optional>
#include <string>
#include <string_view>

namespace platform {

/// Bytes as text in the standard alphabet, with padding. Any thread.
[[nodiscard]] PLATFORM_EXPORT std::string base64(const Data& data);

/// The bytes that such a text stands for. Padding may be missing and white space stand anywhere, as in property lists;
/// any other character, or a digit after the padding, gives nothing. Any thread.
[[nodiscard]] PLATFORM_EXPORT std::optional<Data> dataFromBase64(std::string_view text);

} // namespace platform
