#include "BinaryReader.h"

#include "Unicode.h"

#include <bit>
#include <cstring>
#include <limits>

namespace platform {

Result<BinaryReader> BinaryReader::open(std::span<const std::uint8_t> bytes) {
    BinaryReader reader(bytes);
    if (!reader.readTrailer()) return Result<BinaryReader>::failure(reader.problem());
    return reader;
}

bool BinaryReader::readTrailer() {
    if (bytes_.size() < magic.size() + trailerSize) return fail("too short for a binary property list");
    if (std::memcmp(bytes_.data(), magic.data(), magic.size()) != 0) return fail("not a binary property list");

    const std::uint8_t* trailer = bytes_.data() + bytes_.size() - trailerSize;
    offsetSize_ = trailer[6];
    referenceSize_ = trailer[7];
    const std::uint64_t objectCount = bigEndian(trailer + 8, 8);
    const std::uint64_t root = bigEndian(trailer + 16, 8);
    const std::uint64_t tableOffset = bigEndian(trailer + 24, 8);

    if (offsetSize_ < 1 || offsetSize_ > 8 || referenceSize_ < 1 || referenceSize_ > 8)
        return fail("the trailer gives a size that no number has");
    if (tableOffset < magic.size() || tableOffset > bytes_.size() - trailerSize)
        return fail("the table of offsets lies outside the bytes");
    if (objectCount > (bytes_.size() - trailerSize - tableOffset) / offsetSize_)
        return fail("the table of offsets is longer than the bytes");
    if (objectCount > std::numeric_limits<std::uint32_t>::max() / 2) return fail("too many objects");
    if (root >= objectCount) return fail("there is no root object");

    objectCount_ = static_cast<std::size_t>(objectCount);
    root_ = static_cast<std::size_t>(root);
    objectsEnd_ = bytes_.data() + tableOffset;
    room_ = static_cast<std::size_t>(tableOffset) - magic.size();
    return true;
}

bool BinaryReader::readAnyUid(const std::uint8_t* at, std::size_t& uid) {
    BinaryObject object;
    if (!readAny(at, object)) return false;
    uid = static_cast<std::size_t>(object.integer);
    return object.kind == BinaryObject::Kind::uid || fail("an archived object that is not referred to by UID");
}

bool BinaryReader::readAny(const std::uint8_t* at, BinaryObject& object) {
    using enum BinaryObject::Kind;
    const unsigned type = *at >> 4U;
    const unsigned low = *at & 0x0FU;
    ++at;
    auto remaining = static_cast<std::size_t>(objectsEnd_ - at);

    const auto fixed = [&](BinaryObject::Kind kind, std::size_t size) {
        object.kind = kind;
        return size <= remaining || fail("a number is cut short");
    };
    std::size_t unitSize = 1;
    switch (type) {
    case 0x0:
        if (low != 0 && low != 8 && low != 9) return fail("an object of an unknown kind");
        object.kind = low == 0 ? null : boolean;
        object.integer = low == 9 ? 1 : 0;
        return true;
    case 0x1:
        if (low > 4) return fail("an integer of an unknown size");
        if (!fixed(integer, std::size_t{1} << low)) return false;
        return readInteger(std::size_t{1} << low, at, object);
    case 0x2:
        if (low != 2 && low != 3) return fail("a real of an unknown size");
        if (!fixed(real, std::size_t{1} << low)) return false;
        object.real = low == 3 ? std::bit_cast<double>(bigEndian(at, 8))
                               : std::bit_cast<float>(static_cast<std::uint32_t>(bigEndian(at, 4)));
        return true;
    case 0x3:
        if (low != 3) return fail("a date of an unknown size");
        if (!fixed(date, 8)) return false;
        object.real = std::bit_cast<double>(bigEndian(at, 8));
        return true;
    case 0x8:
        if (low > 3) return fail("a UID of an unknown size");
        if (!fixed(uid, low + 1)) return false;
        object.integer = static_cast<std::int64_t>(bigEndian(at, low + 1));
        return true;
    case 0x4:
        object.kind = data;
        break;
    case 0x5:
        object.kind = ascii;
        break;
    case 0x6:
        object.kind = utf16, unitSize = 2;
        break;
    case 0xA: // a list
    case 0xB: // an ordered set
    case 0xC: // a set: its order in the bytes is as good as any
        object.kind = list, unitSize = referenceSize_;
        break;
    case 0xD:
        object.kind = dictionary, unitSize = 2 * referenceSize_;
        break;
    default:
        return fail("an object of an unknown kind");
    }

    std::uint64_t count = low;
    if (low == 0x0F) {
        if (remaining < 1 || (*at >> 4U) != 0x1 || (*at & 0x0FU) > 3) return fail("a count that is no integer");
        const std::size_t size = std::size_t{1} << (*at & 0x0FU);
        if (remaining < 1 + size) return fail("a count is cut short");
        count = bigEndian(at + 1, size);
        at += 1 + size;
        remaining -= 1 + size;
    }
    if (unitSize == 1 ? count > remaining : count > remaining / unitSize)
        return fail("a count is larger than the bytes that remain");
    object.contents = at;
    object.count = static_cast<std::size_t>(count);
    object.contentsSize = object.count * unitSize;
    return true;
}

bool BinaryReader::readInteger(std::size_t size, const std::uint8_t* at, BinaryObject& object) {
    // Up to four bytes count from zero, eight are signed. Sixteen are what writers use for an unsigned number beyond
    // 63 bits: no value holds it, and a number silently changed would be worse than none.
    if (size == 16) {
        const bool negative = (at[8] & 0x80U) != 0;
        if (bigEndian(at, 8) != (negative ? ~std::uint64_t{0} : 0)) return fail("an integer needs more than 64 bits");
        at += 8;
        size = 8;
    }
    object.integer = static_cast<std::int64_t>(bigEndian(at, size));
    return true;
}

bool BinaryReader::equals(const BinaryObject& object, std::string_view text) {
    return object.kind == BinaryObject::Kind::ascii && object.count == text.size() &&
           std::memcmp(object.contents, text.data(), text.size()) == 0;
}

bool BinaryReader::checkText(const BinaryObject& object) {
    return object.kind != BinaryObject::Kind::ascii || isAscii(object.contents, object.count) ||
           fail("an ASCII text holds other bytes");
}

std::string BinaryReader::text(const BinaryObject& object) {
    if (object.kind == BinaryObject::Kind::utf16) return textFromUtf16(object.contents, object.count);
    return std::string(asciiText(object));
}

} // namespace platform
