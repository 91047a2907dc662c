#include "settings/app/History.h"

#include "link/Messages.h"
#include "platform/foundation/Unicode.h"
#include "platform/messaging/CFMessagePort.h"
#include "settings/app/Background.h"
#include "settings/app/Profiles.h"
#include "tools/lumoractl/PageIndex.h"
#include "tools/lumoractl/TweakClient.h"
#include "tools/lumoractl/TweakPast.h"
#include "tweak/Defaults.h"

#include <QDateTime>
#include <QLocale>

#include <algorithm>
#include <utility>

namespace settings {

using lumora::ChangeRecord;
using lumora::Withheld;
using platform::Dictionary;
using platform::Result;
using platform::Value;

/// All that is known at a time, and a place in it.
struct History::Told {
    Told(lumora::Past known, SettingNames called) : past(std::move(known)), names(std::move(called)) {}

    lumora::Past past;
    SettingNames names;
    lumora::TimelineCursor cursor{past.timeline};
};

namespace {

QDateTime timeOf(const ChangeRecord& record) {
    return QDateTime::fromMSecsSinceEpoch(record.time.time_since_epoch().count());
}

QString dayOf(const QDateTime& time) {
    const qint64 ago = time.date().daysTo(QDate::currentDate());
    if (ago == 0) return QObject::tr("Today");
    if (ago == 1) return QObject::tr("Yesterday");
    return QLocale::c().toString(time.date(), QStringLiteral("dddd, d MMMM yyyy"));
}

Value orNil(const std::optional<Value>& value) {
    return value.value_or(nullptr);
}

Value valueIn(const Dictionary& settings, const std::string& key) {
    const Value* value = settings.find(key);
    return value ? *value : Value();
}

} // namespace

History::History(Shell& shell, LockScreen* lockScreen, std::filesystem::path root)
    : QAbstractListModel(&shell), shell_(shell), lockScreen_(lockScreen), root_(std::move(root)) {
}

History::~History() = default;

bool History::isOffered() const {
    return platform::CFMessagePortIsServed(lumora::portName(lumora::kHistory));
}

void History::ask(bool opens) {
    using Asked = Result<std::shared_ptr<Told>>;
    ++asking_;
    inBackground(
        *this,
        [root = root_]() -> Asked {
            auto past = lumora::fetchPast();
            if (!past) return Asked::failure(past.error());
            if (!past.value()) return Asked::failure("the tweak offers no history");
            auto index = lumora::keptIndex();
            if (!index)
                if (auto made = lumora::currentIndex(root)) index = std::move(made).value();
            return std::make_shared<Told>(*std::move(past).value(),
                                          index ? SettingNames(*std::move(index)) : SettingNames());
        },
        [this, opens](const Asked& asked) {
            --asking_;
            if (!asked)
                return shell_.say(tr("The history cannot be told: %1")
                                      .arg(QString::fromStdString(platform::printable(asked.error()))));
            beginResetModel();
            told_ = asked.value();
            restored_.clear();
            endResetModel();
            preview(std::nullopt);
            emit told();
            emit moved();
            if (opens) emit opened();
        });
}

void History::close() {
    preview(std::nullopt);
}

/// What the lock screen shows for others stays.
void History::preview(const std::optional<Dictionary>& settings) {
    if (lockScreen_ && (settings || previews_)) lockScreen_->preview(settings);
    previews_ = settings.has_value();
}

int History::count() const {
    return told_ ? int(told_->past.timeline.records().size()) : 0;
}

int History::place() const {
    return told_ ? int(told_->cursor.place()) : 0;
}

void History::setPlace(int place) {
    if (!told_ || place < 0 || place > count() || place == this->place()) return;
    told_->cursor.moveTo(std::size_t(place));
    restored_ = restoration();
    preview(place == count() ? std::nullopt : std::optional(told_->cursor.settings()));
    emit dataChanged(index(0), index(count() - 1), {LaterRole});
    emit moved();
}

QString History::moment() const {
    if (!told_ || place() == count()) return {};
    if (place() == 0) return tr("Before all changes that are known");
    const QDateTime time = timeOf(told_->past.timeline.records()[std::size_t(place() - 1)]);
    return dayOf(time) + QStringLiteral(", ") + time.toString(QStringLiteral("HH:mm:ss"));
}

/// What is not known of that time stays as it is, and so does what no message can take away.
std::vector<SettingChange> History::restoration() const {
    std::vector<SettingChange> changes;
    const auto untold = told_->past.timeline.untoldAt(told_->cursor.place());
    for (const lumora::Setting& setting : lumora::knownSettings()) {
        if (setting.secure || std::ranges::find(untold, setting.key) != untold.end()) continue;
        const Value* now = told_->past.timeline.present().find(setting.key);
        const Value* then = told_->cursor.settings().find(setting.key);
        if (then && (!now || !(*now == *then))) changes.push_back({setting.key, now ? *now : Value(), *then});
    }
    return changes;
}

void History::restore() {
    if (restored_.empty()) return;
    const QString when = moment();
    const QString words = tr("The settings are as they were: %1").arg(when);
    withPresent([this, when, words, restored = restored_](const Dictionary& present) {
        std::vector<SettingChange> changes;
        for (const auto& [key, before, after] : restored)
            if (Value now = valueIn(present, key); now != after) changes.push_back({key, std::move(now), after});
        if (changes.empty()) return shell_.say(words);
        applyAndTell(shell_, when, std::move(changes), words);
    });
}

/// What was fetched when the history was opened may have changed since.
void History::withPresent(std::function<void(const Dictionary&)> work) {
    inBackground(
        *this, [] { return lumora::fetchSettings(); },
        [this, work = std::move(work)](const Result<Dictionary>& present) {
            if (present) return work(present.value());
            shell_.say(tr("Nothing is changed: %1").arg(QString::fromStdString(platform::printable(present.error()))));
        });
}

const ChangeRecord& History::recordAt(int row) const {
    return told_->past.timeline.records()[std::size_t(count() - 1 - row)];
}

/// The default where none was set; nil without one.
Value History::valueBefore(const ChangeRecord& record) const {
    const Value* byDefault = record.before ? nullptr : told_->past.defaults.find(record.key);
    return byDefault ? *byDefault : orNil(record.before);
}

/// Nothing where the values are not kept, or there was none, or the setting was changed again since.
std::optional<SettingChange> History::undoing(int row) const {
    const ChangeRecord& record = recordAt(row);
    if (record.withheld != Withheld::nothing || lumora::isSecure(record.key)) return std::nullopt;
    if (told_->past.timeline.nextOfKey(std::size_t(count() - 1 - row))) return std::nullopt;
    const Value before = valueBefore(record);
    if (before.isNil()) return std::nullopt;
    return SettingChange{record.key, orNil(record.after), before};
}

void History::undo(int row) {
    const auto change = row >= 0 && row < count() ? undoing(row) : std::nullopt;
    if (!change) return;
    const QString title = told_->names.titleOf(change->key);
    withPresent([this, title, change = *change](const Dictionary& present) {
        if (valueIn(present, change.key) == change.before)
            // The list is to have this change, too.
            return applyAndTell(shell_, title, {change}, tr("“%1” is as it was").arg(title), [this] { ask(false); });
        shell_.say(tr("“%1” has been changed since").arg(title));
        ask(false);
    });
}

int History::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : count();
}

QVariant History::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) return {};
    const ChangeRecord& record = recordAt(index.row());
    const SettingNames& names = told_->names;
    switch (role) {
    case TitleRole:
        return names.titleOf(record.key);
    case PathRole:
        return names.pathOf(record.key);
    case ChangeRole:
        if (record.withheld != Withheld::nothing) return tr("Changed");
        return names.shown(record.key, valueBefore(record)) + QStringLiteral(" → ") +
               names.shown(record.key, orNil(record.after));
    case TimeRole:
        return timeOf(record).toString(QStringLiteral("HH:mm:ss"));
    case DayRole:
        return dayOf(timeOf(record));
    case PossibleRole:
        return undoing(index.row()).has_value();
    case LaterRole:
        return index.row() < count() - place();
    default:
        return {};
    }
}

QHash<int, QByteArray> History::roleNames() const {
    return {{TitleRole, "title"}, {PathRole, "path"},         {ChangeRole, "change"}, {TimeRole, "time"},
            {DayRole, "day"},     {PossibleRole, "possible"}, {LaterRole, "later"}};
}

} // namespace settings
