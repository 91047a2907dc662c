#pragma once

#include "platform/preferences/PSSpecifier.h"
#include "search/Index.h"

#include <array>
#include <cstddef>
#include <optional>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace bench {

inline constexpr std::array kWordsOfSearchedRows{
    "Blur",   "Color",     "Opacity", "Passcode",     "View",   "Enable",   "Hide",           "Button",
    "Badges", "Labels",    "Icon",    "Size",         "Date",   "Subtitle", "Unlock",         "Screen",
    "Lock",   "Battery",   "Status",  "Bar",          "Camera", "Grabber",  "Slide",          "Font",
    "Offset", "Spacing",   "Tint",    "Notification", "Sleep",  "After",    "Schl\u00FCssel", "Gr\u00F6\u00DFe",
    "Farbe",  "\u00C9cran"};

/// An index as large as any that is promised to be quick, always the same: 200 pages of switches, of which a few words
/// are said again and again.
inline search::Index tenThousandRows() {
    constexpr std::size_t rows = 10000;
    constexpr std::size_t rowsOfPage = 50;
    std::mt19937 random(1);
    const auto words = [&](std::size_t count) {
        std::string text;
        while (count-- > 0)
            text +=
                (text.empty() ? "" : " ") + std::string(kWordsOfSearchedRows[random() % kWordsOfSearchedRows.size()]);
        return text;
    };
    std::vector<search::Page> pages{{"Root", "Lumora", std::nullopt, 0, "", ""}};
    std::vector<search::Entry> entries;
    for (std::size_t i = 0; i < rows; ++i) {
        if (i % rowsOfPage == 0) pages.push_back({"Page", words(2), random() % pages.size(), i, "", ""});
        search::Entry entry;
        entry.page = pages.size() - 1;
        entry.row = i % rowsOfPage;
        entry.title = words(2 + random() % 3);
        entry.cell = platform::PSSwitchCell;
        entry.identifier = entry.key = "kTest" + std::to_string(i);
        entry.header = words(2);
        entry.footer = words(10);
        if (random() % 4 == 0) entry.options = {words(1), words(1), words(2)};
        entry.words = {words(1), words(2)};
        entries.push_back(std::move(entry));
    }
    return {std::move(pages), std::move(entries)};
}

} // namespace bench
