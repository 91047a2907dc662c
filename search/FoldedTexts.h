#pragma once

#include "search/Entry.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace search {

/// What stands between the texts of a row. No folded text of a row has it but as a space.
inline constexpr char kBetweenTexts = '\n';

/// Where a text stands among all texts.
struct Place {
    std::uint32_t begin = 0;
    std::uint32_t length = 0;
};

/// The folded texts of an index, one behind the other.
struct FoldedTexts {
    struct OfPage {
        Place title;
        std::uint64_t letters = 0; ///< of the titles on the way to the page, its own too
    };
    struct OfEntry {
        std::uint64_t letters = 0; ///< of the texts below, and of the page's
        Place title;
        Place rest;  ///< placeholder, options, header, footer, name and identifier
        Place words; ///< the further words
    };
    std::string all;
    std::vector<OfPage> pages;
    std::vector<OfEntry> entries;

    [[nodiscard]] std::string_view text(Place place) const {
        return std::string_view(all).substr(place.begin, place.length);
    }
};

/// The texts of an entry beside title and further words, in the order in which they tell why it is found.
[[nodiscard]] std::vector<std::string_view> restOf(const Entry& entry);

/// Any thread.
[[nodiscard]] FoldedTexts foldAll(const std::vector<Page>& pages, const std::vector<Entry>& entries);

} // namespace search
