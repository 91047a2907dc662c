#include "search/Matching.h"

#include "search/Folding.h"

namespace search {
namespace {

constexpr std::size_t kLettersToForgive = 4;

constexpr bool continuesCharacter(char c) {
    return (static_cast<unsigned char>(c) & 0xC0U) == 0x80U;
}

std::size_t characters(std::string_view text) {
    std::size_t count = 0;
    for (const char c : text)
        if (!continuesCharacter(c)) ++count;
    return count;
}

Where whereIs(std::string_view text, std::size_t at) {
    if (at == 0) return Where::atBeginning;
    return beginsWord(text, at) ? Where::atWord : Where::inside;
}

/// The bytes of the first character.
std::size_t first(std::string_view text) {
    std::size_t length = text.empty() ? 0 : 1;
    while (length < text.size() && continuesCharacter(text[length]))
        ++length;
    return length;
}

/// How many bytes at the text's beginning are the word with one mistake; none if they are not.
std::size_t lengthWithMistake(std::string_view text, std::string_view word) {
    std::size_t same = 0;
    while (same < text.size() && same < word.size() && text[same] == word[same])
        ++same;
    while (same > 0 && same < word.size() && continuesCharacter(word[same]))
        --same;
    text.remove_prefix(same);
    word.remove_prefix(same);
    const std::size_t there = first(text);
    const std::size_t here = first(word);
    const std::string_view afterThere = text.substr(there);
    const std::string_view afterHere = word.substr(here);
    if (here == 0) return same;                                                                 // no mistake at all
    if (there > 0 && afterThere.starts_with(afterHere)) return same + there + afterHere.size(); // replaced
    if (there > 0 && afterThere.starts_with(word)) return same + there + word.size();           // left out
    if (text.starts_with(afterHere)) return same + afterHere.size();                            // added
    const std::size_t next = first(afterHere);
    const bool swapped = next > 0 && text.starts_with(afterHere.substr(0, next)) &&
                         text.substr(next).starts_with(word.substr(0, here)) &&
                         text.substr(next + here).starts_with(afterHere.substr(next));
    return swapped ? same + word.size() : 0;
}

} // namespace

SoughtWord::SoughtWord(std::string_view folded)
    : text(folded), letters(lettersOf(folded)), forgiving(characters(folded) >= kLettersToForgive) {
}

Found findWord(std::string_view text, std::string_view word) {
    Found best;
    for (std::size_t at = text.find(word); at != std::string_view::npos; at = text.find(word, at + 1)) {
        const Where where = whereIs(text, at);
        if (where > best.where) best = {where, at, word.size()};
        if (where == Where::atBeginning) break;
    }
    return best;
}

Found findWithMistake(std::string_view text, std::string_view word) {
    Found best;
    for (std::size_t at = 0; at < text.size(); ++at) {
        if (at > 0 && !beginsWord(text, at)) continue;
        const std::size_t length = lengthWithMistake(text.substr(at), word);
        if (length == 0) continue;
        const Where where = whereIs(text, at);
        if (where > best.where) best = {where, at, length};
        if (where == Where::atBeginning) break;
    }
    return best;
}

} // namespace search
