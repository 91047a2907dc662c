#include "Flattening.h"

#include "platform/foundation/PropertyList.h"

#include <functional>

namespace platform {

namespace {

// Sharing texts saves space and is never needed. So a search for an equal one may be given up, and texts chosen to
// collide cost no more than others; and one copy serves only so many references, which keeps whatever is written within
// the budgets of whoever reads it.
constexpr std::size_t searchLimit = 16;
constexpr std::size_t usesLimit = PropertyListLimits::expandedBytesPerByte;

} // namespace

Result<Flattening> Flattening::of(const Value& root) {
    Flattening flat;
    flat.texts_.resize(256);
    if (const Number added = flat.add(root, 1); !added) return Result<Flattening>::failure(added.error());
    return flat;
}

Flattening::Number Flattening::add(const Value& value, unsigned depth) {
    switch (value.kind()) {
    case Value::Kind::nil:
        holdsNil_ = true;
        return nil;
    case Value::Kind::text:
        return addText(&value, *value.text());
    case Value::Kind::list:
        return addList(value, depth);
    case Value::Kind::dictionary:
        return addDictionary(value, depth);
    case Value::Kind::data:
        contentsSize_ += value.data()->size();
        [[fallthrough]];
    default:
        return addObject(&value, std::nullopt);
    }
}

Flattening::Number Flattening::addList(const Value& value, unsigned depth) {
    const List& list = *value.list();
    const std::uint32_t number = addObject(&value, std::nullopt);
    const Result<std::size_t> first = reserve(number, depth, list.size());
    if (!first) return Number::failure(first.error());
    std::size_t place = first.value();
    for (const Value& entry : list) {
        Number added = add(entry, depth + 1);
        if (!added) return added;
        references_[place++] = added.value();
    }
    objects_[number].count = static_cast<std::uint32_t>(list.size());
    return number;
}

Flattening::Number Flattening::addDictionary(const Value& value, unsigned depth) {
    const Dictionary& dictionary = *value.dictionary();
    const std::uint32_t number = addObject(&value, std::nullopt);
    const Result<std::size_t> first = reserve(number, depth, 2 * dictionary.size());
    if (!first) return Number::failure(first.error());
    std::size_t keyPlace = first.value();
    std::size_t valuePlace = keyPlace + dictionary.size();
    for (const auto& [key, entry] : dictionary) {
        references_[keyPlace++] = addText(nullptr, key);
        Number added = add(entry, depth + 1);
        if (!added) return added;
        references_[valuePlace++] = added.value();
    }
    objects_[number].count = static_cast<std::uint32_t>(dictionary.size());
    return number;
}

Result<std::size_t> Flattening::reserve(std::uint32_t number, unsigned depth, std::size_t references) {
    using Place = Result<std::size_t>;
    const std::size_t first = references_.size();
    if (depth > PropertyListLimits::depth) return Place::failure("nested too deeply");
    if (references > PropertyListLimits::writtenValues - first) return Place::failure("too large a value");
    objects_[number].firstReference = static_cast<std::uint32_t>(first);
    references_.resize(first + references);
    return first;
}

std::uint32_t Flattening::addObject(const Value* value, std::optional<std::string_view> text) {
    objects_.push_back({value, text, 0, 0});
    return static_cast<std::uint32_t>(objects_.size() - 1);
}

std::uint32_t Flattening::addText(const Value* value, std::string_view text) {
    const auto hash = static_cast<std::uint32_t>(std::hash<std::string_view>()(text));
    const std::size_t mask = texts_.size() - 1;
    for (std::size_t i = 0; i < searchLimit; ++i) {
        Known& known = texts_[(hash + i) & mask];
        if (known.number == nil) {
            known = {hash, addObject(value, text)};
            objects_.back().count = 1;
            contentsSize_ += text.size();
            if (++textCount_ > texts_.size() / 2) growTexts();
            return static_cast<std::uint32_t>(objects_.size() - 1);
        }
        if (known.hash != hash || *objects_[known.number].text != text) continue;
        if (objects_[known.number].count == usesLimit) known.number = addObject(value, text);
        ++objects_[known.number].count;
        return known.number;
    }
    contentsSize_ += text.size();
    return addObject(value, text);
}

void Flattening::growTexts() {
    const std::vector<Known> former = std::exchange(texts_, std::vector<Known>(texts_.size() * 4));
    const std::size_t mask = texts_.size() - 1;
    for (const Known& known : former) {
        if (known.number == nil) continue;
        for (std::size_t i = 0; i < searchLimit; ++i) {
            Known& place = texts_[(known.hash + i) & mask];
            if (place.number != nil) continue;
            place = known;
            break;
        }
    }
}

} // namespace platform
