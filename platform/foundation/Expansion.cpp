#include "Expansion.h"

#include <algorithm>

namespace platform {

namespace {

enum : std::uint32_t { notMet, metOnce, beingBuilt, firstPlace };

} // namespace

Expansion::Expansion(BinaryReader& reader)
    : reader_(reader),
      valuesLeft_(reader.inputSize() * PropertyListLimits::valuesPerByte + PropertyListLimits::spareValues),
      bytesLeft_(reader.inputSize() * PropertyListLimits::expandedBytesPerByte + PropertyListLimits::spareBytes),
      inputLeft_(2 * reader.inputSize()), built_(reader.objectCount(), notMet) {
}

bool Expansion::charge(std::size_t bytes) {
    if (valuesLeft_ < 1 || bytesLeft_ < bytes) return reader_.fail("shared objects stand for too large a value");
    valuesLeft_ -= 1;
    bytesLeft_ -= bytes;
    return true;
}

Expansion::State Expansion::recall(std::size_t reference, unsigned depth, Value& value) {
    // An object that is not there is for the reader to refuse.
    if (reference >= built_.size() || built_[reference] <= metOnce) return State::fresh;
    if (built_[reference] == beingBuilt) {
        reader_.fail("an object contains itself");
        return State::refused;
    }
    const Built& built = shared_[built_[reference] - firstPlace];
    if (valuesLeft_ < built.values || bytesLeft_ < built.bytes) {
        reader_.fail("shared objects stand for too large a value");
        return State::refused;
    }
    if (depth + built.levels > PropertyListLimits::depth + 1) {
        reader_.fail("nested too deeply");
        return State::refused;
    }
    valuesLeft_ -= built.values;
    bytesLeft_ -= built.bytes;
    if (built.levels > 0) deepest_ = std::max(deepest_, depth + built.levels - 1);
    value = built.value;
    return State::shared;
}

bool Expansion::buildLeaf(std::size_t reference, const BinaryObject& object, Value& value) {
    if (!charge(object.contentsSize) || !consume(object)) return false;
    if (object.kind == BinaryObject::Kind::data) {
        value = Data(object.contents, object.contents + object.count);
    } else {
        const std::shared_ptr<std::string> text = roomForText(object.contentsSize);
        if (!reader_.readText(object, *text)) return false;
        value = Value(text);
    }
    return keep(reference, object.contentsSize, value);
}

std::shared_ptr<std::string> Expansion::roomForText(std::size_t size) {
    if (size > longestInBatch) return std::make_shared<std::string>();
    if (batchUsed_ == batchSize) {
        batch_ = std::make_shared<Batch>();
        batchUsed_ = 0;
    }
    return {batch_, &(*batch_)[batchUsed_++]};
}

bool Expansion::keep(std::size_t reference, std::size_t bytes, const Value& value) {
    // Most texts are met once. One that is met again is built again, and only then worth remembering.
    if (std::exchange(built_[reference], metOnce) == notMet) return true;
    remember(reference, {value, 1, bytes, 0});
    return true;
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

bool Expansion::consume(const BinaryObject& object) {
    if (inputLeft_ < object.contentsSize) return reader_.fail("objects overlap");
    inputLeft_ -= object.contentsSize;
    return true;
}

void Expansion::remember(std::size_t reference, Built built) {
    built_[reference] = firstPlace + static_cast<std::uint32_t>(shared_.size());
    shared_.push_back(std::move(built));
}

} // namespace platform
