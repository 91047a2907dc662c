#pragma once

#include "platform/foundation/Value.h"

#include <string_view>
#include <vector>

namespace platform {

/// Writes a binary property list, object by object, straight into its bytes.
///
///     BinaryWriter writer(2, 100);
///     writer.list(0, 1);
///     writer.reference(1);
///     writer.text(1, "hello");
///     Data bytes = std::move(writer).finish();
///
/// The caller numbers the objects, 0 is the root, and writes each exactly once, in any order. One thread.
class BinaryWriter {
  public:
    /// Every number is below objectBound, which decides how wide references are. The size in bytes is a guess.
    BinaryWriter(std::size_t objectBound, std::size_t expectedSize);

    /// A boolean, integer, real, date or data.
    void scalar(std::size_t number, const Value& value);
    void integer(std::size_t number, std::int64_t integer);
    void real(std::size_t number, double real);
    /// Written as ASCII if every character is, else as UTF-16. A byte that is not UTF-8 becomes U+FFFD.
    void text(std::size_t number, std::string_view text);
    void uid(std::size_t number, std::size_t uid);

    /// The caller goes on with `count` references; for a dictionary with those of all keys, then of all values.
    void list(std::size_t number, std::size_t count);
    void dictionary(std::size_t number, std::size_t count);
    void reference(std::size_t number);

    /// The whole property list.
    [[nodiscard]] Data finish() &&;

  private:
    void begin(std::size_t number);
    [[nodiscard]] std::uint8_t* grow(std::size_t size);
    void append(std::uint64_t number, std::size_t size);
    void header(unsigned type, std::size_t count);

    Data bytes_;
    std::size_t used_ = 0;
    std::vector<std::size_t> offsets_;
    std::size_t referenceSize_;
};

} // namespace platform
