#include "BinaryWriter.h"

#include "BinaryReader.h"
#include "Unicode.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace platform {

namespace {

/// How many bytes a number takes that counts from zero; any width.
constexpr std::size_t width(std::uint64_t number) {
    return std::max<std::size_t>(1, (static_cast<std::size_t>(std::bit_width(number)) + 7) / 8);
}

/// The same in the widths that integers have: 1, 2, 4 or 8.
constexpr std::size_t integerWidth(std::uint64_t number) {
    return std::bit_ceil(width(number));
}

/// The low half of a marker byte that stands for a width.
constexpr unsigned exponent(std::size_t width) {
    return static_cast<unsigned>(std::countr_zero(width));
}

std::uint8_t* writeBigEndian(std::uint8_t* into, std::uint64_t number, std::size_t size) {
    for (std::size_t i = size; i > 0; --i) {
        into[i - 1] = static_cast<std::uint8_t>(number);
        number >>= 8;
    }
    return into + size;
}

} // namespace

BinaryWriter::BinaryWriter(std::size_t objectBound, std::size_t expectedSize)
    : bytes_(std::max(expectedSize, BinaryReader::magic.size())), used_(BinaryReader::magic.size()),
      referenceSize_(width(objectBound)) {
    std::memcpy(bytes_.data(), BinaryReader::magic.data(), BinaryReader::magic.size());
    offsets_.reserve(objectBound);
}

std::uint8_t* BinaryWriter::grow(std::size_t size) {
    if (size > bytes_.size() - used_) bytes_.resize(std::max(bytes_.size() * 2, used_ + size));
    std::uint8_t* room = bytes_.data() + used_;
    used_ += size;
    return room;
}

void BinaryWriter::append(std::uint64_t number, std::size_t size) {
    writeBigEndian(grow(size), number, size);
}

void BinaryWriter::begin(std::size_t number) {
    if (number >= offsets_.size()) offsets_.resize(number + 1);
    offsets_[number] = used_;
}

void BinaryWriter::header(unsigned type, std::size_t count) {
    if (count < 0x0F) {
        append(type << 4U | count, 1);
    } else {
        const std::size_t size = integerWidth(count);
        append(type << 4U | 0x0F, 1);
        append(0x10U | exponent(size), 1);
        append(count, size);
    }
}

void BinaryWriter::scalar(std::size_t number, const Value& value) {
    if (const auto wholeNumber = value.integer()) return integer(number, *wholeNumber);
    if (const auto realNumber = value.real()) return real(number, *realNumber);
    begin(number);
    if (const Data* data = value.data()) {
        header(0x4, data->size());
        std::ranges::copy(*data, grow(data->size()));
    } else if (const auto date = value.date()) {
        append(0x33, 1);
        append(std::bit_cast<std::uint64_t>(date->seconds), 8);
    } else {
        append(value.boolValue() ? 0x09 : 0x08, 1);
    }
}

void BinaryWriter::integer(std::size_t number, std::int64_t integer) {
    begin(number);
    // Only eight bytes have a sign; a negative number therefore always takes them.
    const std::size_t size = integerWidth(static_cast<std::uint64_t>(integer));
    append(0x10U | exponent(size), 1);
    append(static_cast<std::uint64_t>(integer), size);
}

void BinaryWriter::real(std::size_t number, double real) {
    begin(number);
    append(0x23, 1);
    append(std::bit_cast<std::uint64_t>(real), 8);
}

void BinaryWriter::text(std::size_t number, std::string_view text) {
    begin(number);
    if (isAscii(text.data(), text.size())) {
        header(0x5, text.size());
        std::ranges::copy(text, grow(text.size()));
    } else {
        const std::size_t length = utf16Length(text);
        header(0x6, length);
        writeUtf16(text, grow(2 * length));
    }
}

void BinaryWriter::uid(std::size_t number, std::size_t uid) {
    begin(number);
    const std::size_t size = integerWidth(uid);
    append(0x80U | (size - 1), 1);
    append(uid, size);
}

void BinaryWriter::list(std::size_t number, std::size_t count) {
    begin(number);
    header(0xA, count);
}

void BinaryWriter::dictionary(std::size_t number, std::size_t count) {
    begin(number);
    header(0xD, count);
}

void BinaryWriter::reference(std::size_t number) {
    append(number, referenceSize_);
}

Data BinaryWriter::finish() && {
    const std::size_t table = used_;
    const std::size_t offsetSize = width(table);
    std::uint8_t* into = grow(offsets_.size() * offsetSize + BinaryReader::trailerSize);
    for (const std::size_t offset : offsets_)
        into = writeBigEndian(into, offset, offsetSize);
    into = std::fill_n(into, 6, std::uint8_t{0});
    *into++ = static_cast<std::uint8_t>(offsetSize);
    *into++ = static_cast<std::uint8_t>(referenceSize_);
    into = writeBigEndian(into, offsets_.size(), 8);
    into = writeBigEndian(into, 0, 8);
    writeBigEndian(into, table, 8);
    bytes_.resize(used_);
    return std::move(bytes_);
}

} // namespace platform
