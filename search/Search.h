#pragma once

#include "search/Index.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace search {

/// A part of a text, in UTF-16 units.
struct Range {
    std::size_t begin = 0;
    std::size_t length = 0;
    friend bool operator==(const Range&, const Range&) = default;
};

/// An entry that a query has found.
struct Hit {
    std::size_t entry = 0;                  ///< its position in the index
    int rank = 0;                           ///< more is better; comparable among the hits of one query
    bool similar = false;                   ///< it is found only because a mistake was forgiven
    std::vector<Range> title{};             ///< what of the entry's title is found, from left to right
    std::vector<std::vector<Range>> path{}; ///< the same of the titles of Index::wayTo(), one for each page
    /// Why it is found, when neither title nor path have all words: the further word, or the text of the row or its
    /// group, which has the first of the others. Empty otherwise, and for what only the identifier has.
    std::string also{};
};

/// The entries that have every word of the query, the best first, and those equally good in the order of their kinds and
/// of the index; at most so many. A word counts most in the title, then in the path to it, then elsewhere; at the
/// beginning, then at a word's, then inside. Names of fonts and applications, and notes, count half. Case and accents of
/// letters do not count. If there are none, the entries that have words with one mistake: a letter left out, added,
/// replaced, or swapped with the next one, in each word of four letters or more. Nothing for a query without words, or
/// of more than 4096 bytes.
///
///     for (const Hit& hit : find(index, "blur col", 50)) show(index.entries()[hit.entry]);
///
/// Any thread.
[[nodiscard]] std::vector<Hit> find(const Index& index, std::string_view query, std::size_t most);

} // namespace search
