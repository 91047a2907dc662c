#include "settings/app/SettingNames.h"

#include "link/Messages.h"
#include "link/PreferenceKeys.h"
#include "platform/foundation/Unicode.h"
#include "platform/preferences/PSSpecifier.h"
#include "settings/model/RowValue.h"
#include "tweak/Defaults.h"
#include "json/Json.h"

#include <QColor>
#include <QObject>
#include <QStringList>

#include <algorithm>
#include <iterator>
#include <utility>

namespace settings {

using platform::Value;

namespace {

/// In characters; more has no room beside another value.
constexpr qsizetype kLongValue = 60;

/// Settings that no row shows, but a page as a whole.
constexpr std::pair<const char*, const char*> kPagesOfKeys[] = {
    {lumora::kAppsEnabled, "AppsListController"},
    {lumora::kAUAppsDisabled, "AUAppsListController"},
    {lumora::kAppViewsEnabled, "PluginsListViewController"},
    {lumora::kLSBlurColor, "ColorPickerController"},
    {lumora::kLSDateFontName, "FontViewController"},
};

/// What no row of a page shows.
QString plainText(const Value& value) {
    const auto part = [&](const char* key) { return float(std::clamp(value[key].doubleValue(), 0.0, 1.0)); };
    if (value.boolean()) return *value.boolean() ? QObject::tr("On") : QObject::tr("Off");
    if (!value["h"].isNil()) return QColor::fromHsvF(part("h"), part("s"), part("b")).name();
    if (const auto* list = value.list()) {
        if (list->empty()) return QObject::tr("None");
        return list->size() == 1 ? QObject::tr("1 entry") : QObject::tr("%1 entries").arg(list->size());
    }
    if (const auto* text = value.text()) return QString::fromUtf8(*text);
    const auto json = lumora::writeJson(value, lumora::JsonLayout::line);
    return json ? QString::fromStdString(json.value()) : QObject::tr("As it is");
}

} // namespace

SettingNames::SettingNames(search::Index index) : index_(std::move(index)) {
    const auto& entries = index_.entries();
    for (std::size_t i = 0; i < entries.size(); ++i)
        if (!entries[i].key.empty() && entries[i].kind == search::Kind::row) entries_.emplace(entries[i].key, i);
}

const search::Entry* SettingNames::entryOf(const std::string& key) const {
    const auto found = entries_.find(key);
    return found == entries_.end() ? nullptr : &index_.entries()[found->second];
}

std::optional<std::size_t> SettingNames::pageOf(const std::string& key) const {
    const auto known = std::ranges::find(kPagesOfKeys, key, &std::pair<const char*, const char*>::first);
    if (known == std::end(kPagesOfKeys)) return std::nullopt;
    const auto page = std::ranges::find(index_.pages(), known->second, &search::Page::pageClass);
    if (page == index_.pages().end()) return std::nullopt;
    return std::size_t(page - index_.pages().begin());
}

QString SettingNames::titleOf(const std::string& key) const {
    const search::Entry* entry = entryOf(key);
    const auto page = entry ? std::nullopt : pageOf(key);
    const std::string& title = page ? index_.pages()[*page].title : entry && !entry->title.empty() ? entry->title : key;
    return QString::fromStdString(platform::printable(title));
}

QString SettingNames::pathOf(const std::string& key) const {
    const search::Entry* entry = entryOf(key);
    const auto own = pageOf(key);
    if (!entry && !own) return {};
    std::vector<std::size_t> way = index_.wayTo(entry ? entry->page : own.value_or(0));
    if (!entry) way.pop_back(); // which the title is of
    QStringList titles;
    for (const std::size_t page : way)
        if (index_.pages()[page].from) titles << QString::fromStdString(index_.pages()[page].title);
    return titles.join(QStringLiteral(" › "));
}

QString SettingNames::shown(const std::string& key, const Value& value) const {
    const search::Entry* entry = entryOf(key);
    if (lumora::isSecure(key) || (entry && entry->secure)) return QString::fromUtf8(lumora::kSecureDots);
    if (value.isNil()) return QObject::tr("Not set");
    QString text;
    if (entry && entry->cell == platform::PSSliderCell && value.isNumber()) {
        RowSnapshot row;
        row.min = entry->minimum;
        row.max = entry->maximum;
        text = shownNumber(row, value.doubleValue());
    } else if (entry && entry->cell == platform::PSLinkListCell) {
        RowSnapshot row;
        row.value = value;
        row.titles = entry->options;
        row.shortTitles = entry->shortTitles;
        row.values = entry->values;
        text = QString::fromStdString(valueTitleOf(row));
    }
    if (text.isEmpty()) text = plainText(value);
    if (text.isEmpty()) return QObject::tr("Empty");
    return text.size() > kLongValue ? text.first(kLongValue) + QStringLiteral("…") : text;
}

} // namespace settings
