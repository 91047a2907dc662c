// What the shell does for two columns, of which the first shows the page before the one on top.
#include "platform/preferences/PSSpecifier.h"
#include "settings/model/Shell.h"

#include <algorithm>
#include <utility>

namespace settings {
namespace {

bool leadsTo(const RowSnapshot& row, const PageSnapshot& page) {
    return (row.cell == platform::PSLinkCell || row.cell == platform::PSLinkListCell) && row.detail == page.className;
}

/// The link that opened a page: the one that was tapped, or else that of the same title, or else the first to its class.
std::optional<std::size_t> rowThatOpened(const PageSnapshot& page, const PageModel& before) {
    const std::vector<RowSnapshot>& rows = before.snapshot().rows;
    const auto tapped = before.tappedRow();
    if (tapped && *tapped < rows.size() && leadsTo(rows[*tapped], page)) return tapped;
    const auto isIt = [&](const RowSnapshot& row) { return leadsTo(row, page); };
    auto found =
        std::ranges::find_if(rows, [&](const RowSnapshot& row) { return isIt(row) && row.name == page.title; });
    if (found == rows.end()) found = std::ranges::find_if(rows, isIt);
    if (found == rows.end()) return std::nullopt;
    return static_cast<std::size_t>(found - rows.begin());
}

} // namespace

void Shell::setSideBySide(bool both) {
    if (both == std::exchange(sideBySide_, both)) return;
    markOpenRows();
    emit sideBySideChanged();
}

/// That page if it is the one before the page on top, and shown; else null.
PageModel* Shell::pageBefore(std::uint64_t page) const {
    if (!sideBySide_ || pages_.size() < 2) return nullptr;
    PageModel* before = pages_[pages_.size() - 2];
    return before->snapshot().id == page ? before : nullptr;
}

void Shell::turnBackTo(std::uint64_t page) {
    // The page on top stays in the list until the main thread has gone back.
    if (!pageBefore(page) || std::exchange(turnedBackFrom_, topPage()->id) == topPage()->id) return;
    emit aboutToTurnBack();
    back();
}

bool Shell::isOpenRow(std::uint64_t page, const Event& event) const {
    const auto* tap = std::get_if<RowTapped>(&event);
    const PageModel* before = pageBefore(page);
    return tap && before && before->openRow() == tap->row && turnedBackFrom_ != topPage()->id;
}

void Shell::noteTap(std::uint64_t page, const Event& event) {
    const auto* tap = std::get_if<RowTapped>(&event);
    if (!tap) return;
    for (PageModel* open : pages_)
        if (open->snapshot().id == page) open->noteTapped(tap->row);
}

void Shell::markOpenRows() {
    for (std::size_t i = 0; i < pages_.size(); ++i) {
        const bool leads = sideBySide_ && i + 1 < pages_.size();
        pages_[i]->setOpenRow(leads ? rowThatOpened(pages_[i + 1]->snapshot(), *pages_[i]) : std::nullopt);
    }
}

} // namespace settings
