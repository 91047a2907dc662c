#include "Expansion.h"

#include <algorithm>
#include <cstring>

namespace platform {

namespace {

/// False if there are other bytes.
bool copyAscii(const std::uint8_t* from, std::size_t count, char* to) {
    constexpr std::size_t step = sizeof(std::uint64_t);
    std::uint64_t all = 0;
    const auto copy = [&](std::size_t at) {
        std::uint64_t word = 0;
        std::memcpy(&word, from + at, step);
        std::memcpy(to + at, &word, step);
        all |= word;
    };
    if (count >= step) {
        for (std::size_t at = 0; at + step < count; at += step)
            copy(at);
        copy(count - step); // which may overlap the one before
    } else {
        for (std::size_t at = 0; at < count; ++at) {
            to[at] = static_cast<char>(from[at]);
            all |= from[at];
        }
    }
    return (all & 0x8080808080808080U) == 0;
}

} // namespace

Expansion::Expansion(BinaryReader& reader)
    : reader_(reader), valuesLeft_(std::uint64_t{reader.inputSize()} * PropertyListLimits::valuesPerByte +
                                   PropertyListLimits::spareValues),
      bytesLeft_(std::uint64_t{reader.inputSize()} * PropertyListLimits::expandedBytesPerByte +
                 PropertyListLimits::spareBytes),
      inputLeft_(2 * reader.inputSize()), built_(reader.objectCount(), notMet) {
}

Expansion::State Expansion::recallKnown(std::size_t reference, unsigned depth, Value& value) {
    if (built_[reference] == beingBuilt) return refuse("an object contains itself");
    const Built& built = shared_[built_[reference] - firstPlace];
    if (valuesLeft_ < built.values || bytesLeft_ < built.bytes) return refuse(tooLarge);
    if (depth + built.levels > PropertyListLimits::depth + 1) return refuse("nested too deeply");
    valuesLeft_ -= built.values;
    bytesLeft_ -= built.bytes;
    if (built.levels > 0) deepest_ = std::max(deepest_, depth + built.levels - 1);
    value = built.value;
    return State::shared;
}

bool Expansion::buildLeaf(std::size_t reference, const BinaryObject& object, Value& value) {
    using enum BinaryObject::Kind;
    switch (object.kind) {
    case boolean:
        value = object.integer != 0;
        return charge();
    case integer:
        value = object.integer;
        return charge();
    case real:
        value = object.real;
        return charge();
    case date:
        value = Date{object.real};
        return charge();
    default:
        if (isShortText(object)) return buildShortText(reference, object, value);
        return buildContents(object, value) && keep(reference, object.contentsSize, value);
    }
}

/// Of a text or of data.
bool Expansion::buildContents(const BinaryObject& object, Value& value) {
    if (!charge(object.contentsSize) || !consume(object)) return false;
    if (object.kind == BinaryObject::Kind::data)
        value = Data(object.contents, object.contents + object.count);
    else if (reader_.checkText(object))
        value = BinaryReader::text(object);
    else
        return false;
    return true;
}

bool Expansion::buildShortText(std::size_t reference, const BinaryObject& object, Value& value) {
    if (!charge(object.contentsSize) || !consume(object)) return false;
    if (batch_ == nullptr || batch_->textCount == batch_->texts.size() ||
        object.count > batch_->characters.size() - batch_->characterCount)
        batch_ = std::make_shared_for_overwrite<Batch>();
    Batch& batch = *batch_;
    char* const characters = batch.characters.data() + batch.characterCount;
    if (!copyAscii(object.contents, object.count, characters)) return reader_.fail("an ASCII text holds other bytes");
    batch.characterCount += object.count;
    std::string_view& shared = batch.texts[batch.textCount++];
    shared = {characters, object.count};
    value = Value(std::shared_ptr<const std::string_view>(batch_, &shared));
    return keep(reference, object.contentsSize, value);
}

bool Expansion::open(std::size_t reference, unsigned depth, Opened& opened) {
    if (depth > PropertyListLimits::depth) return reader_.fail("nested too deeply");
    opened = {valuesLeft_, bytesLeft_, deepest_};
    if (!charge()) return false;
    built_[reference] = beingBuilt;
    deepest_ = depth;
    return true;
}

void Expansion::close(std::size_t reference, unsigned depth, const Opened& opened, const Value& value) {
    remember(reference, {value, opened.values - valuesLeft_, opened.bytes - bytesLeft_, deepest_ - depth + 1});
    deepest_ = std::max(deepest_, opened.deepest);
}

void Expansion::remember(std::size_t reference, Built built) {
    built_[reference] = firstPlace + static_cast<std::uint32_t>(shared_.size());
    shared_.push_back(std::move(built));
}

} // namespace platform
