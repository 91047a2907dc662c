#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace search {

/// A text for comparing: without case, accents and forms of one letter, ß as ss and letters with strokes as plain ones.
/// Any thread, as all of these.
[[nodiscard]] std::string fold(std::string_view text);

/// A folded text, and where in the text its bytes come from.
struct FoldedPlaces {
    std::string text;
    std::vector<std::uint32_t> begins; ///< for each byte, where its character begins in the text, in UTF-16 units
    std::vector<std::uint32_t> ends;   ///< the same, where it ends, with the marks that belong to it
};
[[nodiscard]] FoldedPlaces foldWithPlaces(std::string_view text);

/// The letters and digits of a folded text, a bit for each of a to z and 0 to 9; the other characters share the rest.
/// What lacks a bit of a word cannot have the word in it.
[[nodiscard]] std::uint64_t lettersOf(std::string_view folded);

/// The words of a folded text, apart from spaces.
[[nodiscard]] std::vector<std::string_view> wordsOf(std::string_view folded);

/// The letters and digits of a folded text, with one space in place of all that is between them.
[[nodiscard]] std::string lettersAndDigitsOf(std::string_view folded);

/// Whether a word of a folded text can begin at a position: at its beginning, and behind what is no letter or digit.
[[nodiscard]] bool beginsWord(std::string_view folded, std::size_t at);

} // namespace search
