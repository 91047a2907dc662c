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

Dictionary document(const SectionSnapshot& section) {
    List rows;
    for (const CellSnapshot& cell : section.cells)
        rows.emplace_back(Dictionary{{"identifier", cell.identifier}, {"title", cell.title}, {"marked", cell.marked}});
    return Dictionary{{"header", section.header}, {"footer", section.footer}, {"rows", std::move(rows)}};
}

List sectionsOf(const PageSnapshot& page) {
    List sections;
    if (!page.table) return sections;
    for (const SectionSnapshot& section : page.table->sections)
        sections.emplace_back(document(section));
    return sections;
}

} // namespace

Value rowsDocument(const PageSnapshot& page) {
    if (page.hostsView) {
        return Dictionary{{"page", page.className},
                          {"view", page.view ? Value(page.view->className) : Value()},
                          {"sections", sectionsOf(page)}};
    }
    List rows;
    for (const RowSnapshot& row : page.rows)
        rows.emplace_back(document(row));
    return Dictionary{{"page", page.className}, {"rows", std::move(rows)}};
}

} // namespace settings
