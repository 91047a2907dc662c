#include "search/Folding.h"

#include "platform/foundation/Unicode.h"

#include <algorithm>
#include <array>

namespace search {
namespace {

struct StrokedLetter {
    std::string_view letter;
    std::string_view plain;
};

/// Those whose stroke is no mark of its own, so that taking them apart leaves them as they are.
constexpr std::array<StrokedLetter, 8> kStrokedLetters{{{"\u0142", "l"},
                                                        {"\u00F8", "o"},
                                                        {"\u0111", "d"},
                                                        {"\u0127", "h"},
                                                        {"\u0167", "t"},
                                                        {"\u0131", "i"},
                                                        {"\u00E6", "ae"},
                                                        {"\u0153", "oe"}}};

constexpr bool isPlain(char c) {
    return static_cast<unsigned char>(c) < 0x80;
}

constexpr char lower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

constexpr bool isLetterOrDigit(char c) {
    return !isPlain(c) || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9');
}

std::string withoutStrokes(std::string text) {
    for (const auto& [letter, plain] : kStrokedLetters)
        for (std::size_t at = 0; (at = text.find(letter, at)) != std::string::npos; at += plain.size())
            text.replace(at, letter.size(), plain);
    return text;
}

} // namespace

std::string fold(std::string_view text) {
    if (!std::ranges::all_of(text, isPlain)) return withoutStrokes(platform::folded(text));
    std::string folded(text);
    std::ranges::transform(folded, folded.begin(), lower);
    return folded;
}

FoldedPlaces foldWithPlaces(std::string_view text) {
    FoldedPlaces places;
    std::uint32_t unit = 0;
    while (!text.empty()) {
        std::string_view rest = text;
        const char32_t character = platform::takeCharacter(rest);
        const std::uint32_t begin = unit;
        unit += character > 0xFFFF ? 2 : 1;
        const std::string folded = fold(text.substr(0, text.size() - rest.size()));
        places.text += folded;
        places.begins.resize(places.text.size(), begin);
        places.ends.resize(places.text.size(), unit);
        if (folded.empty()) { // a mark belongs to the character before it
            const std::uint32_t before = places.ends.empty() ? 0 : places.ends.back();
            for (auto end = places.ends.rbegin(); end != places.ends.rend() && *end == before; ++end)
                *end = unit;
        }
        text = rest;
    }
    return places;
}

std::uint64_t lettersOf(std::string_view folded) {
    std::uint64_t letters = 0;
    for (const char c : folded) {
        const auto byte = static_cast<unsigned char>(c);
        if (c >= 'a' && c <= 'z')
            letters |= std::uint64_t{1} << (byte - 'a');
        else if (c >= '0' && c <= '9')
            letters |= std::uint64_t{1} << (26 + byte - '0');
        else if (c > ' ' || !isPlain(c))
            letters |= std::uint64_t{1} << (36 + byte % 28);
    }
    return letters;
}

std::vector<std::string_view> wordsOf(std::string_view folded) {
    constexpr std::string_view spaces = " \t\r\n\v\f";
    std::vector<std::string_view> words;
    for (std::size_t at = folded.find_first_not_of(spaces); at != std::string_view::npos;) {
        const std::size_t end = std::min(folded.find_first_of(spaces, at), folded.size());
        words.push_back(folded.substr(at, end - at));
        at = folded.find_first_not_of(spaces, end);
    }
    return words;
}

std::string lettersAndDigitsOf(std::string_view folded) {
    std::string left;
    bool isApart = false;
    for (const char c : folded) {
        if (isLetterOrDigit(c)) {
            if (isApart && !left.empty()) left += ' ';
            left += c;
        }
        isApart = !isLetterOrDigit(c);
    }
    return left;
}

bool beginsWord(std::string_view folded, std::size_t at) {
    return at == 0 || (!isLetterOrDigit(folded[at - 1]) && isLetterOrDigit(folded[at]));
}

} // namespace search
