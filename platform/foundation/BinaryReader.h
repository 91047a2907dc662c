#pragma once

#include "platform/foundation/Result.h"
#include "platform/foundation/Value.h"

#include <span>
#include <string_view>

namespace platform {

/// One object of a binary property list as it lies in the bytes, of which nothing is copied.
struct BinaryObject {
    enum class Kind : std::uint8_t { null, boolean, integer, real, date, data, ascii, utf16, uid, list, dictionary };

    [[nodiscard]] bool isText() const { return kind == Kind::ascii || kind == Kind::utf16; }

    Kind kind = Kind::null;
    std::int64_t integer = 0;               ///< a boolean, integer or UID
    double real = 0;                        ///< a real, or a date's seconds
    const std::uint8_t* contents = nullptr; ///< bytes, UTF-16 units, or references
    std::size_t count = 0;                  ///< bytes, UTF-16 units, or entries
    std::size_t contentsSize = 0;           ///< of the contents, in bytes
};

/// The structure of a binary property list: finds objects by reference, and checks every offset, count and reference
/// against the bytes that are there before it is used.
///
///     auto reader = BinaryReader::open(bytes);
///     BinaryObject root;
///     if (reader && reader->read(reader->root(), root)) …
///
/// The bytes must outlive the reader. One thread. An archive has thousands of objects, so neither this class nor the
/// decoders on top of it make a Result for each: an operation returns a bool and fills what it is handed. Only the
/// whole becomes a Result, made of problem().
class BinaryReader {
  public:
    /// What a binary property list begins with, and how many bytes its end has.
    static constexpr std::string_view magic = "bplist00";
    static constexpr std::size_t trailerSize = 32;

    /// Checks the trailer, from which all else follows.
    [[nodiscard]] static Result<BinaryReader> open(std::span<const std::uint8_t> bytes);

    [[nodiscard]] std::size_t root() const { return root_; }
    [[nodiscard]] std::size_t objectCount() const { return objectCount_; }
    [[nodiscard]] std::size_t inputSize() const { return bytes_.size(); }

    /// False, with a reason in problem(), unless the reference leads to a sound object.
    [[nodiscard]] bool read(std::size_t reference, BinaryObject& object);
    /// The same for an object that must be a UID.
    [[nodiscard]] bool readUid(std::size_t reference, std::size_t& uid);
    /// Whether a text's contents are sound. Takes time in proportion to their length, so charge for them first.
    [[nodiscard]] bool checkText(const BinaryObject& object);
    /// The contents of a text that has passed checkText(): an ASCII text in place, any text as a copy.
    [[nodiscard]] static std::string_view asciiText(const BinaryObject& object) {
        return {reinterpret_cast<const char*>(object.contents), object.count};
    }
    [[nodiscard]] static std::string text(const BinaryObject& object);
    /// Always false, so that a decoder can return it. Sets problem().
    bool fail(const char* problem) {
        problem_ = problem;
        return false;
    }
    [[nodiscard]] const char* problem() const { return problem_; }
    /// How many references have been followed so far.
    [[nodiscard]] std::size_t visits() const { return visits_; }

    /// References to a list's entries, and to a dictionary's keys and values; index < count.
    [[nodiscard]] std::size_t entry(const BinaryObject& list, std::size_t index) {
        ++visits_;
        return bigEndian(list.contents + index * referenceSize_, referenceSize_);
    }
    [[nodiscard]] std::size_t key(const BinaryObject& dictionary, std::size_t index) {
        return entry(dictionary, index);
    }
    [[nodiscard]] std::size_t value(const BinaryObject& dictionary, std::size_t index) {
        return entry(dictionary, dictionary.count + index);
    }

    /// Whether an object is this ASCII text.
    [[nodiscard]] static bool equals(const BinaryObject& object, std::string_view text);

  private:
    explicit BinaryReader(std::span<const std::uint8_t> bytes) : bytes_(bytes) {}
    [[nodiscard]] static std::uint64_t bigEndian(const std::uint8_t* bytes, std::size_t size) {
        if (size == 2) return static_cast<std::uint64_t>(bytes[0]) << 8U | bytes[1];
        std::uint64_t number = bytes[0];
        for (std::size_t i = 1; i < size; ++i)
            number = (number << 8) | bytes[i];
        return number;
    }
    [[nodiscard]] bool readTrailer();
    [[nodiscard]] bool readInteger(std::size_t size, const std::uint8_t* at, BinaryObject& object);

    std::span<const std::uint8_t> bytes_;
    const std::uint8_t* objectsEnd_ = nullptr; ///< where the offset table begins
    std::size_t offsetSize_ = 0;
    std::size_t referenceSize_ = 0;
    std::size_t objectCount_ = 0;
    std::size_t root_ = 0;
    std::size_t visits_ = 0;
    const char* problem_ = "";
};

} // namespace platform
