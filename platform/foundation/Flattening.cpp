#include "Flattening.h"

#include "platform/foundation/PropertyList.h"

#include <functional>

namespace platform {

namespace {

// Sharing texts saves space and is never needed. So the search for an equal text ends early, and texts chosen to
// collide cost no more than others; and one copy serves a limited number of references, which keeps what is written
// within its reader's budgets.
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
    case Value::Kind::dictionary:
        return addContainer(value, depth);
    case Value::Kind::data:
        contentsSize_ += value.data()->size();
        [[fallthrough]];
    default:
        return addObject(&value, std::nullopt);
    }
}

Flattening::Number Flattening::addContainer(const Value& value, unsigned depth) {
    const Dictionary* dictionary = value.dictionary();
    const std::size_t count = dictionary ? dictionary->size() : value.list()->size();
    const std::size_t added = dictionary ? 2 * count : count;
    const std::size_t first = references_.size();
    if (depth > PropertyListLimits::depth) return Number::failure("nested too deeply");
    if (added > PropertyListLimits::writtenValues - first) return Number::failure("too large a value");
    const std::uint32_t number = addObject(&value, std::nullopt);
    objects_[number].firstReference = static_cast<std::uint32_t>(first);
    objects_[number].count = static_cast<std::uint32_t>(count);
    references_.resize(first + added);

    std::size_t place = first + added - count;
    const auto addEntry = [&](const Value& entry) {
        Number entryNumber = add(entry, depth + 1);
        if (entryNumber) references_[place++] = entryNumber.value();
        return entryNumber;
    };
    if (!dictionary) {
        for (const Value& entry : *value.list())
            if (Number failed = addEntry(entry); !failed) return failed;
        return number;
    }
    std::size_t keyPlace = first;
    for (const auto& [key, entry] : *dictionary) {
        references_[keyPlace++] = addText(nullptr, key);
        if (Number failed = addEntry(entry); !failed) return failed;
    }
    return number;
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
