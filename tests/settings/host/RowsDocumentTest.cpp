#include "settings/host/RowsDocument.h"

#include <gtest/gtest.h>

namespace {

using namespace platform;
using namespace settings;

PageSnapshot pageOf(RowSnapshot row) {
    PageSnapshot page;
    page.className = "RootPage";
    page.rows.push_back(std::move(row));
    return page;
}

/// What is shown of a page's only row.
Dictionary documentOf(RowSnapshot row) {
    return *rowsDocument(pageOf(std::move(row)))["rows"].list()->front().dictionary();
}

TEST(RowsDocument, GivesEachRowOnlyWhatItHas) {
    RowSnapshot row;
    row.cell = 6;
    row.name = "Enable";
    row.identifier = "kEnabled";
    EXPECT_EQ(
        rowsDocument(pageOf(row)),
        Value(Dictionary{{"page", "RootPage"},
                         {"rows", List{Dictionary{{"cell", 6}, {"name", "Enable"}, {"identifier", "kEnabled"}}}}}));
}

TEST(RowsDocument, KeepsIntegersRealsAndBooleansApart) {
    for (const Value& value : {Value(1), Value(1.0), Value(true)}) {
        RowSnapshot row;
        row.value = value;
        const Value shown = documentOf(row)["value"];
        EXPECT_EQ(shown.kind(), value.kind());
        EXPECT_EQ(shown, value);
    }
}

TEST(RowsDocument, ShowsSecureValuesAsDotsWhateverTheyAre) {
    for (const Value& secret : {Value("1234"), Value(""), Value(1234)}) {
        RowSnapshot row;
        row.cell = 12;
        EXPECT_FALSE(documentOf(row).contains("value"));
        row.value = secret;
        EXPECT_EQ(documentOf(row)["value"], Value("•••"));
    }
}

TEST(RowsDocument, HasItsKeysInTheirOrder) {
    RowSnapshot row;
    row.cell = 5;
    row.name = "n";
    row.identifier = "i";
    row.value = 0.5;
    row.footerText = "f";
    row.placeholder = "p";
    row.min = 0.0;
    row.max = 1.0;
    row.showValue = false;
    row.titles = {"One"};
    row.values = {1};
    row.detail = "Detail";
    row.icon = std::make_shared<const UIImage>(CGSize{1, 1}, Data{}, Data{});
    std::vector<std::string> keys;
    for (const auto& [key, value] : documentOf(row))
        keys.push_back(key);
    EXPECT_EQ(keys, (std::vector<std::string>{"cell", "name", "identifier", "value", "footerText", "placeholder", "min",
                                              "max", "showValue", "titles", "values", "detail", "icon"}));
}

TEST(RowsDocument, NamesTheViewOfAPageThatHostsOne) {
    PageSnapshot page;
    page.className = "FontPage";
    page.hostsView = true;
    EXPECT_EQ(rowsDocument(page), Value(Dictionary{{"page", "FontPage"}, {"view", Value()}, {"sections", List{}}}));
    page.view = std::make_shared<const ViewSnapshot>(ViewSnapshot{"FontView", {}, {}});
    EXPECT_EQ(rowsDocument(page)["view"], Value("FontView"));
}

TEST(RowsDocument, ListsTheSectionsOfATableWithTheirRows) {
    PageSnapshot page;
    page.className = "ListPage";
    page.hostsView = true;
    page.view = std::make_shared<const ViewSnapshot>(ViewSnapshot{"ListView", {}, {}});
    TableSnapshot table;
    table.layout = platform::TableLayout({{"Enabled", " ", 50, 24, 40, 2}, {"Disabled", "Drag them.", 50, 24, 40, 0}});
    table.cells[{0, 0}] = {.title = "Clock", .identifier = "com.example.clock", .image = nullptr, .movable = true};
    table.cells[{0, 1}] = {
        .title = "", .identifier = "com.example.gone", .image = nullptr, .movable = true, .marked = true};
    page.table = std::make_shared<const TableSnapshot>(table);
    const Dictionary clock{{"identifier", "com.example.clock"}, {"title", "Clock"}, {"marked", false}};
    const Dictionary gone{{"identifier", "com.example.gone"}, {"title", ""}, {"marked", true}};
    EXPECT_EQ(rowsDocument(page),
              Value(Dictionary{
                  {"page", "ListPage"},
                  {"view", "ListView"},
                  {"sections", List{Dictionary{{"header", "Enabled"}, {"footer", " "}, {"rows", List{clock, gone}}},
                                    Dictionary{{"header", "Disabled"}, {"footer", "Drag them."}, {"rows", List{}}}}}}));
}

} // namespace
