#pragma once

#include "history/ChangeRecord.h"

#include <optional>
#include <string_view>

namespace lumora {

/// Reads a line, without its end, that lineOf() has written of plain values: numbers, switches, texts without escapes.
/// Many times as fast as reading JSON, and with the same result. Nothing for any other line, which may be a record all
/// the same. Any thread.
[[nodiscard]] std::optional<ChangeRecord> readPlainLine(std::string_view line);

} // namespace lumora
