#pragma once

#include "platform/foundation/Value.h"

#include <optional>
#include <string>
#include <string_view>

namespace lumora {

/// The standard alphabet, padded.
[[nodiscard]] std::string encodeBase64(const platform::Data& data);
/// Nothing unless the text is exactly what encodeBase64() writes for some data.
[[nodiscard]] std::optional<platform::Data> decodeBase64(std::string_view text);

} // namespace lumora
