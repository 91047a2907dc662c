#include "Expansion.h"

#include <algorithm>

namespace platform {

Expansion::Expansion(BinaryReader& reader)
    : reader_(reader),
      valuesLeft_(reader.inputSize() * PropertyListLimits::valuesPerByte + PropertyListLimits::spareValues),
      bytesLeft_(reader.inputSize() * PropertyListLimits::expandedBytesPerByte + PropertyListLimits::spareBytes),
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
        return buildContents(reference, object, value);
    }
}

/// Of a text or of data.
bool Expansion::buildContents(std::size_t reference, const BinaryObject& object, Value& value) {
    if (!charge(object.contentsSize) || !consume(object)) return false;
    if (object.kind == BinaryObject::Kind::data) {
        value = Data(object.contents, object.contents + object.count);
    } else {
        if (!reader_.checkText(object)) return false;
        value = object.kind == BinaryObject::Kind::ascii ? share(BinaryReader::asciiText(object))
                                                         : share(BinaryReader::text(object));
    }
    return keep(reference, object.contentsSize, value);
}

Value Expansion::share(std::string_view text) {
    if (text.size() > longestInBatch) return text;
    if (batch_ == nullptr || batch_->textCount == batch_->texts.size() ||
        text.size() > batch_->characters.size() - batch_->characterCount)
        batch_ = std::make_shared_for_overwrite<Batch>();
    char* const characters = batch_->characters.data() + batch_->characterCount;
    batch_->characterCount += text.copy(characters, text.size());
    std::string_view& shared = batch_->texts[batch_->textCount++];
    shared = {characters, text.size()};
    return Value(std::shared_ptr<const std::string_view>(batch_, &shared));
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
