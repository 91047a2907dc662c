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
    std::uint32_t number = 0;
    if (const char* problem = flat.add(root, 1, number)) return Result<Flattening>::failure(problem);
    return flat;
}

const char* Flattening::add(const Value& value, unsigned depth, std::uint32_t& number) {
    switch (value.kind()) {
    case Value::Kind::nil:
        holdsNil_ = true;
        number = nil;
        return nullptr;
    case Value::Kind::text:
        number = addText(&value, *value.text());
        return nullptr;
    case Value::Kind::list:
        number = addObject(&value, std::nullopt);
        return addList(*value.list(), depth, number);
    case Value::Kind::dictionary:
        number = addObject(&value, std::nullopt);
        return addDictionary(*value.dictionary(), depth, number);
    case Value::Kind::data:
        contentsSize_ += value.data()->size();
        [[fallthrough]];
    default:
        number = addObject(&value, std::nullopt);
        return nullptr;
    }
}

const char* Flattening::addList(const List& list, unsigned depth, std::uint32_t number) {
    if (depth > PropertyListLimits::depth) return "nested too deeply";
    std::size_t place = references_.size();
    if (const char* problem = reserve(number, list.size())) return problem;
    for (const Value& entry : list) {
        std::uint32_t entryNumber = 0;
        if (const char* problem = add(entry, depth + 1, entryNumber)) return problem;
        references_[place++] = entryNumber;
    }
    objects_[number].count = static_cast<std::uint32_t>(list.size());
    return nullptr;
}

const char* Flattening::addDictionary(const Dictionary& dictionary, unsigned depth, std::uint32_t number) {
    if (depth > PropertyListLimits::depth) return "nested too deeply";
    std::size_t keyPlace = references_.size();
    std::size_t valuePlace = keyPlace + dictionary.size();
    if (const char* problem = reserve(number, 2 * dictionary.size())) return problem;
    for (const auto& [key, value] : dictionary) {
        std::uint32_t valueNumber = 0;
        references_[keyPlace++] = addText(nullptr, key);
        if (const char* problem = add(value, depth + 1, valueNumber)) return problem;
        references_[valuePlace++] = valueNumber;
    }
    objects_[number].count = static_cast<std::uint32_t>(dictionary.size());
    return nullptr;
}

const char* Flattening::reserve(std::uint32_t number, std::size_t references) {
    if (references > PropertyListLimits::writtenValues - references_.size()) return "too large a value";
    objects_[number].firstReference = static_cast<std::uint32_t>(references_.size());
    references_.resize(references_.size() + references);
    return nullptr;
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
