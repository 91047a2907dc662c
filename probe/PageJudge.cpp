#include "probe/PageJudge.h"

#include "platform/preferences/PSListController.h"
#include "settings/host/RowsDocument.h"
#include "settings/host/SnapshotOf.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <stdexcept>
#include <utility>
#include <vector>

namespace lumora {

using namespace platform;
using settings::PageSnapshot;
using settings::RowSnapshot;

namespace {

constexpr std::size_t kMostPages = 100;
/// Of an icon, in pixels; twice that in the file of twice the resolution.
constexpr int kIconSize = 29;

struct MadePage {
    std::shared_ptr<PSListController> page;
    Class pageClass;
    PageSnapshot shown;
};

std::string wrongSize(const std::string& size, const std::string& wanted) {
    return "the icon has " + size + " pixels, and not " + wanted;
}

/// A page and all pages of the plug-in's own that rows lead to, each class once.
class OwnPages {
  public:
    OwnPages(Class firstPage, const std::string& title) { visit(firstPage, title, nullptr); }

    [[nodiscard]] const std::vector<MadePage>& all() const { return pages_; }

  private:
    void visit(Class pageClass, const std::string& title, const PSSpecifierRef& row) {
        if (pages_.size() >= kMostPages || !visited_.insert(pageClass).second) return;
        const auto page = std::dynamic_pointer_cast<PSListController>(pageClass->make());
        if (!page) throw std::runtime_error(pageClass->name + " makes no page");
        page->setTitle(title);
        page->setSpecifier(row);
        page->viewWillAppear(false);
        pages_.push_back({page, pageClass, settings::snapshotOf(*page, pageClass->name, 0)});
        if (const PSSpecifierList rows = page->hostsView() ? nullptr : page->specifiers())
            for (const PSSpecifierRef& each : *rows)
                if (const Class next = each->detail().resolve(); next && NSClassFromString(next->name) != next)
                    visit(next, each->name(), each);
    }

    std::vector<MadePage> pages_;
    std::set<Class> visited_;
};

/// The pixels of a PNG file along its sides, as "58 × 58"; empty for any other file.
std::string sizeOfPng(const Data& file) {
    constexpr std::size_t sides = 16; // where the header has them
    constexpr std::string_view signature = "\x89PNG\r\n\x1a\n";
    if (file.size() < sides + 8 || !std::equal(signature.begin(), signature.end(), file.begin(),
                                               [](char a, std::uint8_t b) { return std::uint8_t(a) == b; }))
        return {};
    const auto number = [&file](std::size_t at) {
        std::uint32_t read = 0;
        for (std::size_t i = at; i < at + 4; ++i)
            read = read << 8U | file[i];
        return std::to_string(read);
    };
    return number(sides) + " × " + number(sides + 4);
}

std::string squareOf(int side) {
    return std::to_string(side) + " × " + std::to_string(side);
}

std::string shortNumber(double number) {
    std::string text = std::to_string(number);
    while (text.find('.') != std::string::npos && (text.back() == '0' || text.back() == '.')) {
        const bool point = text.back() == '.';
        text.pop_back();
        if (point) break;
    }
    return text;
}

bool isEditable(const RowSnapshot& row) {
    switch (row.cell) {
    case PSLinkListCell:
    case PSSliderCell:
    case PSSwitchCell:
    case PSEditTextCell:
    case PSSecureEditTextCell:
        return true;
    default:
        return false;
    }
}

/// Judges the rows of one page after the other.
class RowJudge {
  public:
    void judge(const MadePage& made) {
        title_ = made.shown.title;
        const PSSpecifierList rows = made.shown.hostsView ? nullptr : made.page->specifiers();
        for (number_ = 0; number_ < made.shown.rows.size(); ++number_)
            judge(made.shown.rows[number_], *(*rows)[number_]);
    }

    void compare(const std::vector<MadePage>& first, const std::vector<MadePage>& second) {
        for (std::size_t i = 0; i < std::min(first.size(), second.size()); ++i) {
            title_ = first[i].shown.title;
            const Value one = rowsDocument(first[i].shown)["rows"];
            const Value other = rowsDocument(second[i].shown)["rows"];
            if (one == other || !one.list() || !other.list()) continue;
            const List& rows = *one.list();
            const List& others = *other.list();
            if (rows.size() != others.size())
                return add("rows-differ", title_ + ": " + std::to_string(rows.size()) + " rows the first time, " +
                                              std::to_string(others.size()) + " the second");
            number_ = std::size_t(std::ranges::mismatch(rows, others).in1 - rows.begin());
            return addOfRow("rows-differ", first[i].shown.rows[number_], "not the same when the page is made again");
        }
        if (first.size() != second.size())
            add("rows-differ", "links lead to " + std::to_string(first.size()) + " pages the first time, to " +
                                   std::to_string(second.size()) + " the second");
    }

    [[nodiscard]] Dictionary told() const {
        List keys;
        for (const auto& [key, place] : keys_)
            keys.emplace_back(key);
        return Dictionary{{"findings", findings_}, {"keys", std::move(keys)}};
    }

  private:
    void add(const char* check, const std::string& what) {
        findings_.emplace_back(Dictionary{{"check", check}, {"what", what}});
    }
    [[nodiscard]] std::string placeOf(const RowSnapshot& row) const {
        const std::string& name = row.identifier.empty() ? row.name : row.identifier;
        return title_ + ", row " + std::to_string(number_ + 1) + (name.empty() ? "" : " (\"" + name + "\")");
    }
    void addOfRow(const char* check, const RowSnapshot& row, const std::string& what) {
        add(check, placeOf(row) + ": " + what);
    }

    void judge(const RowSnapshot& row, const PSSpecifier& record) {
        if (isEditable(row)) judgeKey(row);
        if (row.cell == PSLinkListCell) judgeOptions(row);
        if (row.cell == PSLinkCell && !record.detail().resolve())
            addOfRow("link", row, row.detail.empty() ? "opens nothing" : "there is no page class " + row.detail);
        if (row.cell == PSButtonCell && !record.action) addOfRow("link", row, "the button has no action");
        if (row.cell == PSSliderCell) judgeBounds(row);
        if (record.hasProperty("iconImage")) judgeIcon(row);
    }

    void judgeKey(const RowSnapshot& row) {
        if (row.identifier.empty()) return addOfRow("key", row, "has no identifier");
        const auto [known, isNew] = keys_.emplace(row.identifier, placeOf(row));
        if (!isNew) addOfRow("key-twice", row, "the identifier is that of " + known->second + " too");
    }

    void judgeOptions(const RowSnapshot& row) {
        if (row.titles.size() != row.values.size())
            return addOfRow("options", row,
                            std::to_string(row.titles.size()) + " titles and " + std::to_string(row.values.size()) +
                                " values");
        if (row.titles.empty()) addOfRow("options", row, "there are no options");
    }

    void judgeBounds(const RowSnapshot& row) {
        if (!row.min || !row.max) return addOfRow("slider", row, "has no bounds");
        if (!std::isfinite(*row.min) || !std::isfinite(*row.max) || *row.min >= *row.max)
            addOfRow("slider", row, "from " + shortNumber(*row.min) + " to " + shortNumber(*row.max));
    }

    void judgeIcon(const RowSnapshot& row) {
        if (!row.icon) return addOfRow("icon", row, "the icon is missing, or neither PNG nor JPEG");
        for (const int scale : {1, 2}) {
            const std::string wanted = squareOf(scale * kIconSize);
            const std::string size = sizeOfPng(row.icon->encoded(scale));
            if (size == wanted) continue;
            if (scale == 2 && &row.icon->encoded(2) == &row.icon->encoded(1))
                return addOfRow("icon", row, "there is no \"@2x\" icon, of " + wanted + " pixels");
            if (size.empty()) return addOfRow("icon", row, "the icon is no PNG file");
            addOfRow("icon", row, wrongSize(size, wanted));
        }
    }

    std::string title_;
    std::size_t number_ = 0;
    std::map<std::string, std::string> keys_; ///< and where each is
    List findings_;
};

} // namespace

Dictionary judgePages(Class firstPage, const std::string& title) {
    const OwnPages pages(firstPage, title);
    RowJudge judge;
    for (const MadePage& made : pages.all())
        judge.judge(made);
    judge.compare(pages.all(), OwnPages(firstPage, title).all());
    return judge.told();
}

void makePages(Class firstPage, const std::string& title) {
    const OwnPages pages(firstPage, title);
}

} // namespace lumora
