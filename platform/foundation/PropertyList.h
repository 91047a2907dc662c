#pragma once

#include "platform/foundation/Result.h"
#include "platform/foundation/Value.h"

namespace platform {

/// What a reader accepts. Archives share objects, so a few bytes can stand for a tree of any size; these budgets bound
/// what is expanded before the work is done, in proportion to the length of the input.
struct PropertyListLimits {
    static constexpr unsigned depth = 128;                ///< nested lists and dictionaries
    static constexpr std::size_t valuesPerByte = 4;       ///< expanded values for each byte of input, plus spareValues
    static constexpr std::size_t spareValues = 4096;
    static constexpr std::size_t expandedBytesPerByte = 64; ///< bytes of expanded text and data, plus spareBytes
    static constexpr std::size_t spareBytes = 1 << 20;
};

/// Reads a property list in binary or XML form (Info.plist, the stand-in tweak's settings file). nil cannot occur
/// inside. Any bytes give a value or an error; any thread.
[[nodiscard]] PLATFORM_EXPORT Result<Value> readPropertyList(const Data& bytes);

/// Writes a property list in binary form. Fails when the value is nested too deeply or holds nil.
[[nodiscard]] PLATFORM_EXPORT Result<Data> writePropertyList(const Value& value);

} // namespace platform
