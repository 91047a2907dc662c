#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace search {

/// Where in a text a word is found; more is better.
enum class Where : unsigned char { nowhere, inside, atWord, atBeginning };

/// A word's best place in a folded text, in bytes.
struct Found {
    Where where = Where::nowhere;
    std::size_t begin = 0;
    std::size_t length = 0;
};

/// A word that is sought: folded, with what can be told of it beforehand. Refers to the text it is taken from.
struct SoughtWord {
    explicit SoughtWord(std::string_view folded);
    std::string_view text;
    std::uint64_t letters;
    bool forgiving; ///< long enough that one mistake in it can be forgiven
};

/// Finds a word in a text. Any thread, as the next one.
[[nodiscard]] Found findWord(std::string_view text, std::string_view word);

/// The same, at the beginnings of words only, with one mistake in the word: a letter left out, added, replaced, or
/// swapped with the next one.
[[nodiscard]] Found findWithMistake(std::string_view text, std::string_view word);

} // namespace search
