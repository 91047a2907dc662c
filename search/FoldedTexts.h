#pragma once

#include "search/Entry.h"

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace search {

/// The texts of an index, folded and cut at spaces. Of ten thousand rows most words are the same few, so a query looks
/// at each of these once, and then only where the rows have them.
struct FoldedTexts {
    /// A word of a text: its number, and whether the text begins with it.
    struct Word {
        std::uint32_t number : 31;
        std::uint32_t isFirst : 1;
    };
    /// Where the words of a text, or of several, stand among all.
    struct Place {
        std::uint32_t begin = 0;
        std::uint32_t length = 0;
    };
    struct OfPage {
        Place title;
        std::uint64_t letters = 0; ///< of the titles on the way to the page, its own too
    };
    struct OfEntry {
        std::uint64_t letters = 0; ///< of the texts below, and of the page's
        std::uint32_t page = 0;    ///< the entry's, and its kind: beside what else each query reads
        Kind kind = Kind::row;
        Place title;
        Place rest;             ///< see restOf()
        Place words;            ///< the further words
        std::string plainTitle; ///< its letters and digits
    };
    std::vector<std::string> known;     ///< the different words, by number
    std::vector<std::uint64_t> letters; ///< of each of these
    std::vector<Word> all;
    std::vector<OfPage> pages;
    std::vector<OfEntry> entries;

    [[nodiscard]] std::span<const Word> wordsAt(Place place) const {
        return std::span(all).subspan(place.begin, place.length);
    }
};

/// The texts of an entry beside title and further words, in the order in which they tell why it is found: placeholder,
/// options, header, footer, name and identifier.
[[nodiscard]] std::vector<std::string_view> restOf(const Entry& entry);

/// Any thread.
[[nodiscard]] FoldedTexts foldAll(const std::vector<Page>& pages, const std::vector<Entry>& entries);

} // namespace search
