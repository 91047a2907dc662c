#pragma once

#include "platform/preferences/PSListController.h"
#include "platform/preferences/PSTextFieldSpecifier.h"

#include <gtest/gtest.h>

#include <optional>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

namespace tests {

/// Everything that a row of a settings page says of itself.
struct ExpectedRow {
    int cell = 0;
    std::string name{};
    std::string identifier{};
    std::string detail{};
    std::string footer{};
    std::string placeholder{};
    std::optional<double> min{};
    std::optional<double> max{};
    bool showsValue = false;
    std::vector<std::string> titles{};
    std::vector<platform::Value> values{};
    friend bool operator==(const ExpectedRow&, const ExpectedRow&) = default;

    friend std::ostream& operator<<(std::ostream& out, const ExpectedRow& row) {
        return out << "kind " << row.cell << " \"" << row.name << "\" key " << row.identifier << " opens " << row.detail
                   << " footer \"" << row.footer << "\" placeholder \"" << row.placeholder << "\" bounds "
                   << row.min.value_or(-1e9) << ".." << row.max.value_or(-1e9) << ", " << row.titles.size()
                   << " titles, " << row.values.size() << " values";
    }
};

using ExpectedRows = std::vector<ExpectedRow>;

inline ExpectedRow group(const std::string& header, const std::string& footer = "") {
    return {.cell = 0, .name = header, .footer = footer};
}
inline ExpectedRow page(const std::string& title, const std::string& pageClass) {
    return {.cell = 1, .name = title, .detail = pageClass};
}
inline ExpectedRow options(const std::string& title, const std::string& key, const std::vector<std::string>& titles,
                           const std::vector<platform::Value>& values) {
    return {.cell = 2,
            .name = title,
            .identifier = key,
            .detail = "PSListItemsController",
            .titles = titles,
            .values = values};
}
inline ExpectedRow slider(const std::string& key, double min, double max) {
    return {.cell = 5, .identifier = key, .min = min, .max = max, .showsValue = true};
}
inline ExpectedRow toggle(const std::string& title, const std::string& key) {
    return {.cell = 6, .name = title, .identifier = key};
}
inline ExpectedRow text(const std::string& title) {
    return {.cell = 7, .name = title};
}
inline ExpectedRow field(const std::string& placeholder, const std::string& key) {
    return {.cell = 8, .identifier = key, .placeholder = placeholder};
}
inline ExpectedRow secret(const std::string& placeholder, const std::string& key) {
    return {.cell = 12, .identifier = key, .placeholder = placeholder};
}
inline ExpectedRow button(const std::string& title) {
    return {.cell = 13, .name = title};
}

inline ExpectedRow asExpected(const platform::PSSpecifier& row) {
    ExpectedRow shown{.cell = row.cellType(),
                      .name = row.name(),
                      .identifier = row.identifier(),
                      .detail = row.detail().name(),
                      .showsValue = row.property("showValue").boolValue(),
                      .titles = row.titles(),
                      .values = row.values()};
    const platform::Value footer = row.property("footerText");
    if (footer.text()) shown.footer = *footer.text();
    if (const auto* field = dynamic_cast<const platform::PSTextFieldSpecifier*>(&row))
        shown.placeholder = field->placeholder();
    if (row.hasProperty("min")) shown.min = row.property("min").doubleValue();
    if (row.hasProperty("max")) shown.max = row.property("max").doubleValue();
    return shown;
}

/// The page has exactly these rows, in this order. Those of static text answer to the row builder, all others to the
/// page; those with a key can be read and written, no others.
inline void expectRows(platform::PSListController& page, const ExpectedRows& expected) {
    const auto rows = page.specifiers();
    ASSERT_NE(rows, nullptr);
    EXPECT_EQ(rows->size(), expected.size());
    for (std::size_t i = 0; i < rows->size() && i < expected.size(); ++i) {
        SCOPED_TRACE(i + 1);
        const platform::PSSpecifier& row = *rows->at(i);
        EXPECT_EQ(asExpected(row), expected[i]);
        EXPECT_EQ(row.target() == &page, row.cellType() != platform::PSStaticTextCell);
        EXPECT_EQ(bool(row.setAction()), !expected[i].identifier.empty());
        EXPECT_EQ(bool(row.getAction()), !expected[i].identifier.empty());
    }
}

/// Puts rows into a page's row list from outside, which no page does by itself.
inline void setRowList(platform::PSListController& page, std::vector<platform::PSSpecifierRef> rows) {
    struct Opened : platform::PSListController {
        static auto rowList() { return &Opened::_specifiers; }
    };
    page.*Opened::rowList() = std::make_shared<const std::vector<platform::PSSpecifierRef>>(std::move(rows));
}

} // namespace tests
