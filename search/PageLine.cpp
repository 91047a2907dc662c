#include "search/PageLine.h"

#include "json/Json.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <functional>
#include <map>
#include <numeric>
#include <utility>

namespace search {

using platform::Dictionary;
using platform::List;
using platform::Result;
using platform::Value;

namespace {

constexpr std::array<std::string_view, 7> kKindNames{"row",  "option", "appView", "application",
                                                     "font", "other",  "note"};

void setText(Dictionary& into, const char* key, const std::string& text) {
    if (!text.empty()) into.set(key, text);
}

void setTexts(Dictionary& into, const char* key, const std::vector<std::string>& texts) {
    if (!texts.empty()) into.set(key, List(texts.begin(), texts.end()));
}

Dictionary documentOf(const Entry& entry) {
    Dictionary document{
        {"kind", nameOf(entry.kind)}, {"row", static_cast<std::int64_t>(entry.row)}, {"title", entry.title}};
    if (entry.section >= 0) document.set("section", std::int64_t{entry.section});
    if (entry.cell >= 0) document.set("cell", std::int64_t{entry.cell});
    setText(document, "name", entry.name);
    setText(document, "identifier", entry.identifier);
    setText(document, "key", entry.key);
    if (entry.secure) document.set("secure", true);
    setText(document, "header", entry.header);
    setText(document, "footer", entry.footer);
    setText(document, "placeholder", entry.placeholder);
    setTexts(document, "options", entry.options);
    setTexts(document, "shortTitles", entry.shortTitles);
    if (!entry.values.empty()) document.set("values", List(entry.values));
    if (entry.minimum) document.set("minimum", *entry.minimum);
    if (entry.maximum) document.set("maximum", *entry.maximum);
    if (entry.showsNumber) document.set("showsNumber", true);
    setTexts(document, "chosenBy", entry.chosenBy);
    setTexts(document, "words", entry.words);
    return document;
}

/// Takes the fields of a dictionary, and notes when one is not what it should be.
class LineReader {
  public:
    explicit LineReader(const Value& from) : from_(from.dictionary()) {}

    std::string text(const char* key) {
        const Value value = take(key);
        return value.isNil() ? "" : textOf(value);
    }
    std::vector<std::string> texts(const char* key) {
        std::vector<std::string> texts;
        for (const Value& value : list(key))
            texts.push_back(textOf(value));
        return texts;
    }
    List list(const char* key) {
        const Value value = take(key);
        if (value.isNil()) return {};
        if (!value.list()) good_ = false;
        return value.list() ? *value.list() : List();
    }
    std::optional<std::int64_t> number(const char* key, std::int64_t most) {
        const Value value = take(key);
        if (value.isNil()) return std::nullopt;
        const std::int64_t number = value.integer().value_or(-1);
        if (number < 0 || number > most) good_ = false;
        return good_ ? std::optional(number) : std::nullopt;
    }
    std::optional<double> real(const char* key) {
        const Value value = take(key);
        if (value.isNil()) return std::nullopt;
        if (!value.isNumber()) good_ = false;
        return value.doubleValue();
    }
    bool flag(const char* key) { return take(key).boolValue(); }
    void refuse() { good_ = false; }
    [[nodiscard]] bool isGood() const { return from_ && good_; }

  private:
    Value take(const char* key) { return from_ ? (*from_)[key] : Value(); }
    std::string textOf(const Value& value) {
        if (!value.text()) good_ = false;
        return std::string(value.text() ? *value.text() : std::string_view());
    }

    const Dictionary* from_;
    bool good_ = true;
};

constexpr std::int64_t kMostRows = 1'000'000'000;

std::optional<Entry> entryOf(const Value& document) {
    LineReader read(document);
    Entry entry;
    const std::string kind = read.text("kind");
    const auto* const known = std::ranges::find(kKindNames, kind);
    if (known == kKindNames.end()) return std::nullopt;
    entry.kind = static_cast<Kind>(known - kKindNames.begin());
    entry.row = static_cast<std::size_t>(read.number("row", kMostRows).value_or(0));
    entry.section = static_cast<int>(read.number("section", kMostRows).value_or(-1));
    entry.cell = static_cast<int>(read.number("cell", kMostRows).value_or(-1));
    entry.title = read.text("title");
    entry.name = read.text("name");
    entry.identifier = read.text("identifier");
    entry.key = read.text("key");
    entry.secure = read.flag("secure");
    entry.header = read.text("header");
    entry.footer = read.text("footer");
    entry.placeholder = read.text("placeholder");
    entry.options = read.texts("options");
    entry.shortTitles = read.texts("shortTitles");
    entry.values = read.list("values");
    entry.minimum = read.real("minimum");
    entry.maximum = read.real("maximum");
    entry.showsNumber = read.flag("showsNumber");
    entry.chosenBy = read.texts("chosenBy");
    entry.words = read.texts("words");
    return read.isGood() ? std::optional(std::move(entry)) : std::nullopt;
}

} // namespace

std::string_view nameOf(Kind kind) {
    return kKindNames[std::size_t(kind)];
}

std::string Way::text() const {
    std::string text;
    for (const std::size_t row : rows)
        text += (text.empty() ? "" : ".") + std::to_string(row);
    return text;
}

std::optional<Way> Way::of(std::string_view text) {
    Way way;
    if (text.empty()) return way;
    for (const char* at = text.data();; ++at) {
        const char* const end = text.data() + text.size();
        std::uint32_t row = 0;
        const auto [behind, failed] = std::from_chars(at, end, row);
        if (failed != std::errc() || (behind != end && *behind != '.')) return std::nullopt;
        way.rows.push_back(row);
        if (behind == end) return way;
        at = behind;
    }
}

bool Way::leadsOver(const Way& page) const {
    return page.rows.size() <= rows.size() && std::equal(page.rows.begin(), page.rows.end(), rows.begin());
}

Result<std::string> writePageLine(const PageLine& line) {
    List entries;
    for (const Entry& entry : line.entries)
        entries.emplace_back(documentOf(entry));
    Dictionary document{{"way", line.way.text()}, {"page", line.page.pageClass}, {"title", line.page.title}};
    setText(document, "rowIdentifier", line.page.rowIdentifier);
    setText(document, "rowName", line.page.rowName);
    document.set("entries", std::move(entries));
    return lumora::writeJson(document, lumora::JsonLayout::line);
}

Result<PageLine> readPageLine(std::string_view text) {
    const Result<Value> document = lumora::readJson(text);
    if (!document) return Result<PageLine>::failure(document.error());
    LineReader read(document.value());
    const auto way = Way::of(read.text("way"));
    PageLine line{
        way.value_or(Way()),
        {read.text("page"), read.text("title"), std::nullopt, 0, read.text("rowIdentifier"), read.text("rowName")}};
    for (const Value& each : read.list("entries")) {
        if (auto entry = entryOf(each))
            line.entries.push_back(std::move(*entry));
        else
            read.refuse();
    }
    if (!way || !read.isGood() || line.page.pageClass.empty())
        return Result<PageLine>::failure("this is no page of an index");
    return line;
}

Index indexOf(std::vector<PageLine> lines) {
    std::ranges::stable_sort(lines, {}, &PageLine::way);
    std::vector<Page> pages;
    std::vector<Entry> entries;
    entries.reserve(std::transform_reduce(lines.begin(), lines.end(), std::size_t{0}, std::plus(),
                                          [](const PageLine& line) { return line.entries.size(); }));
    std::map<Way, std::size_t> positions;
    for (PageLine& line : lines) {
        Way before = line.way;
        line.page.from.reset();
        line.page.row = 0;
        if (!before.rows.empty()) {
            line.page.row = before.rows.back();
            before.rows.pop_back();
            const auto from = positions.find(before);
            if (from == positions.end()) continue;
            line.page.from = from->second;
        }
        if (!positions.emplace(line.way, pages.size()).second) continue;
        for (Entry& entry : line.entries) {
            entry.page = pages.size();
            entries.push_back(std::move(entry));
        }
        pages.push_back(std::move(line.page));
    }
    return {std::move(pages), std::move(entries)};
}

std::vector<PageLine> linesOf(const Index& index) {
    std::vector<PageLine> lines;
    for (const Page& page : index.pages()) {
        Way way;
        if (page.from) {
            way = lines[*page.from].way;
            way.rows.push_back(page.row);
        }
        lines.push_back({std::move(way), page});
    }
    for (const Entry& entry : index.entries())
        lines[entry.page].entries.push_back(entry);
    return lines;
}

} // namespace search
