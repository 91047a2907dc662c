#pragma once

#include "platform/foundation/Result.h"
#include "platform/foundation/Value.h"

#include <algorithm>
#include <cstdint>
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
    [[nodiscard]] bool read(std::size_t reference, BinaryObject& object) {
        // Most objects are UIDs and short texts, so these have paths of their own. What they look at before they know
        // that it belongs to the object is at most in the trailer.
        const std::uint8_t* at = find(reference);
        if (at == nullptr) return false;
        const bool countFollows = *at == 0x5F && at[1] == 0x10;
        const std::size_t count = countFollows ? at[2] : *at & 0x0FU;
        const std::uint8_t* contents = at + (countFollows ? 3 : 1);
        if ((*at >> 4U) != 0x5 || (*at == 0x5F && !countFollows) || !isBeforeTable(contents, count))
            return readAny(at, object);
        object.kind = BinaryObject::Kind::ascii;
        object.contents = contents;
        object.count = object.contentsSize = count;
        return true;
    }
    /// The same for an object that must be a UID.
    [[nodiscard]] bool readUid(std::size_t reference, std::size_t& uid) {
        const std::uint8_t* at = find(reference);
        if (at == nullptr) return false;
        if ((*at & 0xFEU) != 0x80 || !isBeforeTable(at, 3)) return readAnyUid(at, uid);
        uid = *at == 0x80 ? at[1] : static_cast<std::size_t>(bigEndian(at + 1, 2));
        return true;
    }
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
        // Where a size has 32 bits, a larger reference must not become that of another object.
        return static_cast<std::size_t>(
            std::min<std::uint64_t>(numberIn(list.contents, index, referenceSize_), SIZE_MAX));
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
        std::uint64_t number = bytes[0];
        for (std::size_t i = 1; i < size; ++i)
            number = (number << 8) | bytes[i];
        return number;
    }
    /// The number at a place in a table of numbers. They have two bytes in all but the smallest and largest archives.
    [[nodiscard]] static std::uint64_t numberIn(const std::uint8_t* table, std::size_t place, std::size_t size) {
        return size == 2 ? bigEndian(table + 2 * place, 2) : bigEndian(table + place * size, size);
    }
    [[nodiscard]] bool readTrailer();
    /// Where an object begins; null, with a reason in problem(), if the reference leads to none.
    [[nodiscard]] const std::uint8_t* find(std::size_t reference) {
        if (reference >= objectCount_) return failToFind("a reference to an object that is not there");
        const std::uint64_t offset = numberIn(objectsEnd_, reference, offsetSize_);
        if (offset - magic.size() >= room_) return failToFind("an object lies outside the bytes");
        return bytes_.data() + offset;
    }
    const std::uint8_t* failToFind(const char* problem) {
        problem_ = problem;
        return nullptr;
    }
    [[nodiscard]] bool isBeforeTable(const std::uint8_t* at, std::size_t size) const {
        return static_cast<std::size_t>(objectsEnd_ - at) >= size && at <= objectsEnd_;
    }
    [[nodiscard]] bool readAny(const std::uint8_t* at, BinaryObject& object);
    [[nodiscard]] bool readAnyUid(const std::uint8_t* at, std::size_t& uid);
    [[nodiscard]] bool readInteger(std::size_t size, const std::uint8_t* at, BinaryObject& object);

    std::span<const std::uint8_t> bytes_;
    const std::uint8_t* objectsEnd_ = nullptr; ///< where the offset table begins
    std::size_t room_ = 0;                     ///< for objects, in bytes
    std::size_t offsetSize_ = 0;
    std::size_t referenceSize_ = 0;
    std::size_t objectCount_ = 0;
    std::size_t root_ = 0;
    std::size_t visits_ = 0;
    const char* problem_ = "";
};

} // namespace platform
