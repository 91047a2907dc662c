#pragma once

#include "platform/foundation/Result.h"
#include "platform/foundation/Value.h"

namespace platform {

/// What readers and writers accept. Archives share objects, so a few bytes can stand for a tree of any size; these
/// budgets limit the tree, before it is built, in proportion to the length of the input. What our writers write stays
/// within them: a reference takes at least a byte, and so does each character that is not shared.
struct PropertyListLimits {
    static constexpr unsigned depth = 128;          ///< nested lists and dictionaries
    static constexpr std::size_t valuesPerByte = 4; ///< expanded values for each byte of input, plus spareValues
    static constexpr std::size_t spareValues = 4096;
    static constexpr std::size_t expandedBytesPerByte = 64; ///< bytes of expanded text and data, plus spareBytes
    static constexpr std::size_t spareBytes = 1 << 20;
    static constexpr std::size_t writtenValues = 1 << 22; ///< entries of all lists and dictionaries together
};

/// Reads a property list in binary or XML form (Info.plist, the stand-in tweak's settings file). Neither form has nil.
/// Any bytes give a value or an error. `visits`, if given, receives the number of references that were followed, at
/// most a small multiple of the input's length. Any thread.
[[nodiscard]] PLATFORM_EXPORT Result<Value> readPropertyList(const Data& bytes, std::size_t* visits = nullptr);

/// Writes a property list in binary form. Fails when the value is nested too deeply, is too large, or holds nil. A byte
/// of a text that is not UTF-8 becomes U+FFFD. Any thread.
[[nodiscard]] PLATFORM_EXPORT Result<Data> writePropertyList(const Value& value);

} // namespace platform
