#pragma once

#include "platform/foundation/Value.h"

#include <optional>
#include <string>
#include <string_view>

namespace lumora {

/// Uses the standard alphabet, with padding.
[[nodiscard]] std::string encodeBase64(const platform::Data& data);
/// Takes exactly what encodeBase64() writes; nothing for any other text.
[[nodiscard]] std::optional<platform::Data> decodeBase64(std::string_view text);

} // namespace lumora
