#include "settings/model/SearchModel.h"

#include "link/Messages.h"
#include "platform/preferences/PSSpecifier.h"
#include "settings/model/RowValue.h"

#include <QStringList>

#include <algorithm>
#include <map>
#include <utility>

namespace settings {

using search::Entry;
using search::Kind;

namespace {

/// More than anybody reads.
constexpr std::size_t kMostResults = 300;

enum SearchRole : int {
    RowTitleRole = Qt::UserRole,
    RowPathRole,
    FirstRole,
    LastRole,
    AlsoRole,
    ValueRole,
    OpensRole,
    SpokenRole,
};

QString toQString(const std::string& text) {
    return QString::fromStdString(text);
}

/// A text for a styled label, in which what is found stands between <b> and </b>.
QString withMarks(const QString& text, const std::vector<search::Range>& marks) {
    QString marked;
    qsizetype done = 0;
    for (const search::Range& mark : marks) {
        const auto begin = std::clamp(qsizetype(mark.begin), done, text.size());
        const auto end = std::clamp(begin + qsizetype(mark.length), begin, text.size());
        marked += text.sliced(done, begin - done).toHtmlEscaped() + QStringLiteral("<b>") +
                  text.sliced(begin, end - begin).toHtmlEscaped() + QStringLiteral("</b>");
        done = end;
    }
    return marked + text.sliced(done).toHtmlEscaped();
}

/// The row with that value, as far as an index knows it.
RowSnapshot rowOf(const Entry& entry, platform::Value value) {
    RowSnapshot row;
    row.value = std::move(value);
    row.min = entry.minimum;
    row.max = entry.maximum;
    row.titles = entry.options;
    row.shortTitles = entry.shortTitles;
    row.values = entry.values;
    return row;
}

bool isIn(const platform::Value& list, const std::string& text) {
    return list.list() && std::ranges::find(*list.list(), platform::Value(text)) != list.list()->end();
}

bool opensAPage(const Entry& entry) {
    return entry.cell == platform::PSLinkCell || entry.cell == platform::PSLinkListCell;
}

} // namespace

void SearchModel::setQuery(const QString& query) {
    if (query == query_) return;
    query_ = query;
    current_ = 0;
    look();
}

void SearchModel::setIndex(const search::Index& index) {
    // Positions in the former index mean nothing in this one.
    show({});
    index_ = index;
    look();
}

void SearchModel::setSettings(platform::Value settings) {
    settings_ = std::move(settings);
    // Some rows are there by settings alone. The current result stays the same one.
    const auto entry = current_ >= 0 ? std::optional(results_[std::size_t(current_)].hit.entry) : std::nullopt;
    look();
    const auto same = std::ranges::find_if(results_, [&](const Result& result) { return result.hit.entry == entry; });
    if (same != results_.end()) setCurrent(int(same - results_.begin()));
}

void SearchModel::look() {
    const std::string query = query_.toStdString();
    std::vector<search::Hit> hits = search::find(index_, query, kMostResults + 1);
    more_ = hits.size() > kMostResults;
    if (more_) hits.pop_back();
    std::erase_if(hits, [this](const search::Hit& hit) { return !isThere(index_.entries()[hit.entry]); });
    similar_ = !hits.empty() && hits.front().similar;
    // By page, in the order of each page's best result.
    std::map<std::size_t, std::size_t> orderOf;
    for (const search::Hit& hit : hits)
        orderOf.emplace(index_.entries()[hit.entry].page, orderOf.size());
    const auto pageOf = [&](const search::Hit& hit) { return index_.entries()[hit.entry].page; };
    std::ranges::stable_sort(hits, {}, [&](const search::Hit& hit) { return orderOf[pageOf(hit)]; });
    std::vector<Result> results;
    results.reserve(hits.size());
    for (std::size_t i = 0; i < hits.size(); ++i) {
        const bool first = i == 0 || pageOf(hits[i]) != entryOf(results.back()).page;
        const bool last = i + 1 == hits.size() || pageOf(hits[i]) != pageOf(hits[i + 1]);
        results.push_back({std::move(hits[i]), first, last});
    }
    show(std::move(results));
    current_ = count() > 0 ? std::clamp(current_, 0, count() - 1) : -1;
    emit found();
    emit currentChanged();
}

/// What draws a result draws another one from now on: only how many there are tells whether some come or go.
void SearchModel::show(std::vector<Result> results) {
    const int before = count();
    const int now = int(results.size());
    if (now < before) {
        beginRemoveRows({}, now, before - 1);
        results_.resize(std::size_t(now));
        endRemoveRows();
    }
    if (now > before) beginInsertRows({}, before, now - 1);
    results_ = std::move(results);
    if (now > before) endInsertRows();
    if (const int shared = std::min(before, now); shared > 0) emit dataChanged(index(0), index(shared - 1));
}

void SearchModel::setCurrent(int result) {
    const int allowed = count() > 0 ? std::clamp(result, 0, count() - 1) : -1;
    if (std::exchange(current_, allowed) != allowed) emit currentChanged();
}

QString SearchModel::announcement() const {
    if (count() == 0) return {};
    const Result& result = results_[std::size_t(current_)];
    const QString place = tr("%1 of %2").arg(current_ + 1).arg(count());
    return QStringList{toQString(entryOf(result).title), plainPathOf(result), place}.join(QStringLiteral(", "));
}

QString SearchModel::plainPathOf(const Result& result) const {
    QStringList titles;
    for (const std::size_t page : index_.wayTo(entryOf(result).page))
        titles << toQString(index_.pages()[page].title);
    return titles.join(QStringLiteral(" › "));
}

QString SearchModel::pathOf(const Result& result) const {
    QStringList titles;
    const auto way = index_.wayTo(entryOf(result).page);
    for (std::size_t i = 0; i < way.size(); ++i)
        titles << withMarks(toQString(index_.pages()[way[i]].title),
                            i < result.hit.path.size() ? result.hit.path[i] : std::vector<search::Range>());
    return titles.join(QStringLiteral(" › "));
}

/// Whether the page has the row with these settings. Without them, there is no row that depends on them.
bool SearchModel::isThere(const Entry& entry) const {
    return entry.chosenBy.empty() || std::ranges::any_of(entry.chosenBy, [&](const std::string& key) {
               return isIn(settings_[key], entry.identifier);
           });
}

/// As the row shows it. Empty where the row shows none, or while no settings are there.
QString SearchModel::valueOf(const Entry& entry) const {
    if (entry.key.empty() || entry.kind != Kind::row || settings_.isNil()) return {};
    const platform::Value value = settings_[entry.key];
    const RowSnapshot row = rowOf(entry, value);
    switch (entry.cell) {
    case platform::PSSwitchCell:
        return value.boolValue() ? tr("On") : tr("Off");
    case platform::PSSliderCell:
        return entry.showsNumber ? shownNumber(row, numberOf(row)) : QString();
    case platform::PSLinkListCell:
        return toQString(valueTitleOf(row));
    case platform::PSSecureEditTextCell:
        return value.isNil() || (value.text() && value.text()->empty()) ? QString()
                                                                        : QString::fromUtf8(lumora::kSecureDots);
    case platform::PSEditTextCell:
        if (entry.secure) return value.isNil() ? QString() : QString::fromUtf8(lumora::kSecureDots);
        return fieldTextOf(row);
    default:
        return {};
    }
}

std::optional<Landing> SearchModel::landingOf(int result) const {
    if (result < 0 || result >= count()) return std::nullopt;
    const Entry& entry = entryOf(results_[std::size_t(result)]);
    Landing landing;
    for (const std::size_t at : index_.wayTo(entry.page)) {
        const search::Page& page = index_.pages()[at];
        if (page.from) landing.way.push_back({{page.row, page.rowIdentifier, page.rowName}, page.pageClass});
    }
    landing.section = entry.section;
    if (entry.kind != Kind::note) landing.row = KnownRow{entry.row, entry.identifier, entry.title};
    return landing;
}

void SearchModel::choose(int result) {
    if (const auto landing = landingOf(result)) {
        setCurrent(result);
        emit chosen(*landing);
    }
}

int SearchModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : count();
}

QVariant SearchModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) return {};
    const Result& result = results_[std::size_t(index.row())];
    const Entry& entry = entryOf(result);
    switch (role) {
    case RowTitleRole:
        return withMarks(toQString(entry.title), result.hit.title);
    case RowPathRole:
        return pathOf(result);
    case FirstRole:
        return result.first;
    case LastRole:
        return result.last;
    case AlsoRole:
        return toQString(result.hit.also);
    case ValueRole:
        return valueOf(entry);
    case OpensRole:
        return opensAPage(entry);
    case SpokenRole: {
        QStringList parts{toQString(entry.title)};
        if (const QString value = valueOf(entry); !value.isEmpty()) parts << value;
        parts << plainPathOf(result);
        if (!result.hit.also.empty()) parts << tr("also: %1").arg(toQString(result.hit.also));
        return parts.join(QStringLiteral(", "));
    }
    default:
        return {};
    }
}

QHash<int, QByteArray> SearchModel::roleNames() const {
    return {{RowTitleRole, "title"}, {RowPathRole, "path"}, {FirstRole, "first"}, {LastRole, "last"},
            {AlsoRole, "also"},      {ValueRole, "value"},  {OpensRole, "opens"}, {SpokenRole, "spokenName"}};
}

} // namespace settings
