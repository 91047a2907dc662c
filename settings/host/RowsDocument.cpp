#include "settings/host/RowsDocument.h"

#include "link/Messages.h"
#include "platform/preferences/PSSpecifier.h"

namespace settings {

using platform::Dictionary;
using platform::List;
using platform::Value;

namespace {

Dictionary document(const RowSnapshot& row) {
    Dictionary shown{{"cell", row.cell}, {"name", row.name}, {"identifier", row.identifier}};
    if (!row.value.isNil())
        shown.set("value", row.cell == platform::PSSecureEditTextCell ? Value(lumora::kSecureDots) : row.value);
    if (!row.footerText.empty()) shown.set("footerText", row.footerText);
    if (!row.placeholder.empty()) shown.set("placeholder", row.placeholder);
    if (row.min) shown.set("min", *row.min);
    if (row.max) shown.set("max", *row.max);
    if (row.showValue) shown.set("showValue", *row.showValue);
    if (!row.titles.empty()) shown.set("titles", List(row.titles.begin(), row.titles.end()));
    if (!row.values.empty()) shown.set("values", List(row.values));
    if (!row.detail.empty()) shown.set("detail", row.detail);
    if (row.icon) shown.set("icon", true);
    return shown;
}

Dictionary document(const CellSnapshot& cell) {
    return Dictionary{{"identifier", cell.identifier}, {"title", cell.title}, {"marked", cell.marked}};
}

List sectionsOf(const TableSnapshot& table) {
    std::vector<List> rows(table.layout.sections().size());
    for (const auto& [path, cell] : table.cells)
        rows[std::size_t(path.section)].emplace_back(document(cell));
    List sections;
    for (int i = 0; const platform::TableSection& section : table.layout.sections())
        sections.emplace_back(Dictionary{
            {"header", section.header}, {"footer", section.footer}, {"rows", std::move(rows[std::size_t(i++)])}});
    return sections;
}

} // namespace

Value rowsDocument(const PageSnapshot& page) {
    if (page.hostsView) {
        return Dictionary{{"page", page.className},
                          {"view", page.view ? Value(page.view->className) : Value()},
                          {"sections", page.table ? sectionsOf(*page.table) : List()}};
    }
    List rows;
    for (const RowSnapshot& row : page.rows)
        rows.emplace_back(document(row));
    return Dictionary{{"page", page.className}, {"rows", std::move(rows)}};
}

} // namespace settings
