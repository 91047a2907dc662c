#include "Differences.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <optional>
#include <ostream>

namespace tests {

using namespace std::string_literals;
using namespace platform;

namespace {

/// The value with a change made to all that is no container, keys too, in the order of its form; then, if it is to be
/// sorted, each dictionary in the order of its keys.
Value changed(const Value& value, const std::function<Value(const Value&)>& change, bool sorted = false) {
    if (const List* list = value.list()) {
        List entries;
        for (const Value& entry : *list)
            entries.push_back(changed(entry, change, sorted));
        return entries;
    }
    if (const Dictionary* dictionary = value.dictionary()) {
        std::vector<Dictionary::Entry> entries;
        for (const auto& [key, entry] : *dictionary) {
            const Value changedKey = change(key);
            entries.emplace_back(*changedKey.text(), changed(entry, change, sorted));
        }
        if (sorted) std::ranges::sort(entries, {}, &Dictionary::Entry::first);
        return Dictionary(std::move(entries));
    }
    return change(value);
}

Value withTextsCutAtNul(const Value& value) {
    return changed(value, [](const Value& leaf) {
        return leaf.text() == nullptr ? leaf : Value(leaf.text()->substr(0, leaf.text()->find('\0')));
    });
}

Value withAsciiTextsCutAtNul(const Value& value) {
    return changed(value, [](const Value& leaf) {
        const bool ascii =
            leaf.text() != nullptr && std::ranges::none_of(*leaf.text(), [](unsigned char c) { return c >= 0x80; });
        return ascii ? withTextsCutAtNul(leaf) : leaf;
    });
}

Value withOtherTextForNull(const Value& value) {
    return changed(value, [](const Value& leaf) { return leaf == Value("$null") ? Value("no $null") : leaf; });
}

/// Of all texts that Unicode takes for equal, random values have these.
Value withComposedTexts(const Value& value) {
    return changed(value, [](const Value& leaf) {
        constexpr std::string_view decomposed = "u\u0308";
        if (leaf.text() == nullptr) return leaf;
        std::string text(*leaf.text());
        for (std::size_t at = text.find(decomposed); at != std::string::npos; at = text.find(decomposed))
            text.replace(at, decomposed.size(), "ü");
        return Value(text);
    });
}

/// Zeros of both signs are one number to those who share equal ones: that which comes first.
Value withZerosLikeTheFirst(const Value& value) {
    std::optional<double> first;
    return changed(value, [&](const Value& leaf) {
        const double number = leaf.date() ? leaf.date()->seconds : leaf.real().value_or(1);
        if (number != 0) return leaf;
        if (!first) first = number;
        return leaf.date() ? Value(Date{*first}) : Value(*first);
    });
}

Value withZeroForNotANumber(const Value& value) {
    return changed(value, [](const Value& leaf) { return std::isnan(leaf.real().value_or(0)) ? Value(0.0) : leaf; });
}

/// nil alone is no entry of anything.
Value withTextForNilInside(const Value& value) {
    if (value.isNil()) return value;
    return changed(value, [](const Value& leaf) { return leaf.isNil() ? Value("no nil") : leaf; });
}

Value inOrderOfKeys(const Value& value) {
    return changed(
        value, [](const Value& leaf) { return leaf; }, true);
}

} // namespace

const std::vector<Difference>& differences() {
    using enum Difference::Effect;
    static const std::vector<Difference> all{
        {"gnustep", "read", "DictionariesHaveAnOrderOfTheirOwn", reorders, inOrderOfKeys,
         Dictionary{{"b", 1}, {"a", 2}, {"c", 3}}},
        {"gnustep", "read", "NilInsideIsRefused", excludes, withTextForNilInside, List{Value()}},
        {"gnustep", "read", "TheTextNullIsReadAsNil", excludes, withOtherTextForNull, List{"$null"}},
        {"gnustep", "write", "DictionariesHaveAnOrderOfTheirOwn", reorders, inOrderOfKeys,
         Dictionary{{"b", 1}, {"a", 2}, {"c", 3}}},
        {"gnustep", "write", "NotANumberIsLost", excludes, withZeroForNotANumber, std::nan("")},
        {"gnustep", "write", "ZerosOfBothSignsAreOne", excludes, withZerosLikeTheFirst, List{0.0, -0.0}},
        {"gnustep", "write mutable", "ComposedAndDecomposedTextsAreOne", excludes, withComposedTexts,
         List{"ü", "u\u0308"}},
        {"libplist", "read", "AsciiTextsEndAtNul", changes, withAsciiTextsCutAtNul, "a\0b"s},
        {"libplist", "write", "TextsEndAtNul", changes, withTextsCutAtNul, "a\0b"s},
        {"plistlib", "write", "ZerosOfBothSignsAreOne", excludes, withZerosLikeTheFirst, List{0.0, -0.0}},
    };
    return all;
}

Value normalised(const Value& value, const std::string& peer, const std::string& way, Difference::Effect effect) {
    Value result = value;
    for (const Difference& difference : differences())
        if (difference.peer == peer && way.starts_with(difference.way) && difference.effect == effect)
            result = difference.normalised(result);
    return result;
}

void PrintTo(const Difference& difference, std::ostream* stream) {
    *stream << difference.peer << " " << difference.way << ": " << difference.name;
}

} // namespace tests
