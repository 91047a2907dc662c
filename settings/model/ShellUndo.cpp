// What the shell does for taking changes back.
#include "platform/preferences/PSSpecifier.h"
#include "settings/model/RowValue.h"
#include "settings/model/Shell.h"

#include <QColor>

#include <algorithm>
#include <utility>

namespace settings {

namespace {

/// A row's value as the row shows it.
QString shownValue(const RowSnapshot& row) {
    const QString text = fieldTextOf(row);
    switch (row.cell) {
    case platform::PSSwitchCell:
        return row.value.boolValue() ? Shell::tr("On") : Shell::tr("Off");
    case platform::PSSliderCell:
        return shownNumber(row, numberOf(row));
    case platform::PSLinkListCell:
        return row.valueTitle.empty() ? Shell::tr("None") : QString::fromStdString(row.valueTitle);
    case platform::PSSecureEditTextCell:
        return text.isEmpty() ? Shell::tr("Empty") : QStringLiteral("••••");
    default:
        return text.isEmpty() ? Shell::tr("Empty") : text;
    }
}

QString titleOfRow(const std::vector<RowSnapshot>& rows, std::size_t position) {
    const std::string title = knownRow(rows, position).title;
    return QString::fromStdString(title.empty() ? rows[position].identifier : title);
}

RowSnapshot withValue(RowSnapshot row, const platform::Value& value) {
    row.value = value;
    row.valueTitle = valueTitleOf(row);
    return row;
}

/// What a view has stored; a list is too long to be told.
QString shownValue(const platform::Value& value, const QString& otherwise) {
    if (const auto* text = value.text()) return QString::fromUtf8(*text);
    const auto part = [&](const char* key) { return float(std::clamp(value[key].doubleValue(), 0.0, 1.0)); };
    if (!value["h"].isNil()) return QColor::fromHsvF(part("h"), part("s"), part("b")).name();
    return otherwise;
}

} // namespace

QString Shell::undoTitle() const {
    return undo_.undo ? QString::fromStdString(*undo_.undo) : QString();
}

QString Shell::redoTitle() const {
    return undo_.redo ? QString::fromStdString(*undo_.redo) : QString();
}

void Shell::undo() {
    takeBack(&Navigation::undo, tr("“%1” is as it was"));
}

void Shell::redo() {
    takeBack(&Navigation::redo, tr("“%1” is changed again"));
}

void Shell::takeBack(Navigation::Undone (Navigation::*work)(), const QString& words) {
    if (pages_.empty() || waiting() || isComposing()) return;
    ++landings_; // pages on the way to the change come without animation
    const auto undone = std::make_shared<Navigation::Undone>();
    post([undone, work](Navigation& navigation) { *undone = (navigation.*work)(); },
         [this, undone, words] {
             --landings_;
             using Fate = Navigation::Undone::Fate;
             const QString title = QString::fromStdString(undone->title);
             switch (undone->fate) {
             case Fate::nothing:
                 return;
             case Fate::done:
                 if (tweakGone_ && !std::exchange(changesLost_, true)) emit tweakChanged();
                 if (topPage() && topPage()->id == undone->where.page)
                     emit changedBack(pages_.back(), undone->where.row ? int(*undone->where.row) : -1);
                 return emit said(words.arg(title), false);
             case Fate::neverSet:
                 return emit said(tr("“%1” had no value before and keeps this one").arg(title), false);
             case Fate::gone:
                 return emit said(tr("“%1” is no longer there").arg(title), false);
             case Fate::refused:
                 return emit said(
                     (undone->sent.made.empty() ? tr("“%1” stays as it is: %2") : tr("Some of “%1” stays as it is: %2"))
                         .arg(title, QString::fromStdString(undone->why)),
                     false);
             }
         });
}

QList<DifferencesModel::Difference> Shell::differencesOfTop() const {
    QList<DifferencesModel::Difference> found;
    const PageSnapshot* page = topPage();
    if (!page || !page->openedRows || page->openedRows->size() != page->rows.size()) return found;
    for (std::size_t i = 0; i < page->rows.size(); ++i) {
        if (!isChanged(*page, i)) continue;
        const RowSnapshot& row = page->rows[i];
        const RowSnapshot& opened = (*page->openedRows)[i];
        const RowSnapshot former = opened.value.isNil() && row.byDefault ? withValue(opened, *row.byDefault) : opened;
        found.append({.title = titleOfRow(page->rows, i),
                      .now = shownValue(row),
                      .then = shownValue(former),
                      .row = int(i),
                      .possible = !former.value.isNil()});
    }
    if (const auto& view = page->viewChange)
        found.append({.title = QString::fromStdString(page->title),
                      .now = shownValue(view->now, tr("As it is")),
                      .then = shownValue(view->before, tr("As it was")),
                      .possible = !view->before.isNil()});
    return found;
}

DifferencesModel* Shell::differences() const {
    const auto found = differencesOfTop();
    return found.isEmpty() ? nullptr
                           : new DifferencesModel(topPage()->id, found, nullptr); // QML owns what an operation gives it
}

void Shell::revert(DifferencesModel* differences) {
    if (!differences || pages_.empty() || waiting() || isComposing()) return;
    std::vector<std::size_t> rows;
    bool view = false;
    for (const auto& difference : differences->differences()) {
        if (!difference.chosen) continue;
        view = view || difference.row < 0;
        if (difference.row >= 0) rows.push_back(std::size_t(difference.row));
    }
    if (rows.empty() && !view) return;
    if (tweakGone_ && !std::exchange(changesLost_, true)) emit tweakChanged();
    const bool all = differences->chosenCount() == differences->count();
    const QString words = all ? tr("This page is as it was when it was opened")
                              : tr("Reverted %1 of %2").arg(differences->chosenCount()).arg(differences->count());
    post([page = differences->page(), rows, view](Navigation& navigation) { navigation.revert(page, rows, view); },
         [this, words, changes = undo_.changes] {
             if (undo_.changes != changes) emit said(words, true);
         });
}

void Shell::setDefaults(platform::Dictionary defaults) {
    post([defaults = std::move(defaults)](Navigation& navigation) { navigation.setDefaults(defaults); });
}

void Shell::apply(std::string title, std::vector<SettingChange> changes, std::function<void(const Sent&)> done) {
    const auto sent = std::make_shared<Sent>();
    post([title = std::move(title), changes = std::move(changes),
          sent](Navigation& navigation) { *sent = navigation.apply(title, changes); },
         [done = std::move(done), sent] { done(*sent); });
}

void Shell::takeUndo(const UndoSnapshot& undo) {
    const bool same = undo.undo == undo_.undo && undo.redo == undo_.redo;
    const bool more = undo.changes != undo_.changes;
    undo_ = undo;
    if (!same) emit undoChanged();
    if (more) emit changed();
}

/// What is said when a row has been moved or reset, which is done by one slip of the hand and easily missed.
QString Shell::wordsFor(std::uint64_t page, const Event& event) const {
    const auto* reset = std::get_if<ValueChanged>(&event);
    if (reset && reset->resets) {
        const auto found =
            std::ranges::find_if(pages_, [&](const PageModel* shown) { return shown->snapshot().id == page; });
        if (found == pages_.end() || reset->row >= (*found)->snapshot().rows.size()) return {};
        return tr("“%1” has its default").arg(titleOfRow((*found)->snapshot().rows, reset->row));
    }
    const auto* move = std::get_if<RowMoved>(&event);
    if (!move || !topPage() || topPage()->id != page || !topPage()->table) return {};
    const TableSnapshot& table = *topPage()->table;
    const auto cell = table.cells.find(move->from);
    if (cell == table.cells.end()) return {};
    const QString name =
        QString::fromStdString(cell->second.title.empty() ? cell->second.identifier : cell->second.title);
    if (move->from.section == move->to.section) return tr("Moved %1").arg(name);
    const auto& sections = table.layout.sections();
    const auto to = std::size_t(move->to.section);
    const std::string header = to < sections.size() ? sections[to].header : std::string();
    return tr("Moved %1 to %2").arg(name, QString::fromStdString(header));
}

} // namespace settings
