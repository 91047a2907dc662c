#include "settings/model/SectionModel.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace settings {
namespace {

using Row = SectionModel::Row;

/// A text or value of a row, and its name in QML. Its number in the list below is the role.
struct Role {
    const char* name;
    QVariant (*read)(const Row& row);
};

constexpr Role kRoles[] = {
    {"place", [](const Row& row) -> QVariant { return row.place; }},
    {"position", [](const Row& row) -> QVariant { return row.row + 1; }},
    {"rowTop", [](const Row& row) -> QVariant { return row.top; }},
    {"first", [](const Row& row) -> QVariant { return row.first; }},
    {"last", [](const Row& row) -> QVariant { return row.last; }},
    {"title", [](const Row& row) -> QVariant { return QString::fromStdString(row.cell.title); }},
    {"titleFont", [](const Row& row) { return row.cell.font ? QVariant::fromValue(row.cell.font) : QVariant(); }},
    {"spokenName",
     [](const Row& row) -> QVariant {
         return QString::fromStdString(row.cell.title.empty() ? row.cell.identifier : row.cell.title);
     }},
    {"icon", [](const Row& row) { return row.cell.image ? QVariant::fromValue(row.cell.image) : QVariant(); }},
    {"movable", [](const Row& row) -> QVariant { return row.cell.movable; }},
    {"editingStyle", [](const Row& row) -> QVariant { return row.cell.editingStyle; }},
    {"indented", [](const Row& row) -> QVariant { return row.cell.indented; }},
    {"marked", [](const Row& row) -> QVariant { return row.cell.marked; }},
};

/// The row at that position in the section, null for none; the rows are in order.
const Row* rowIn(const std::vector<Row>& rows, int row) {
    const auto found = std::ranges::lower_bound(rows, row, {}, &Row::row);
    return found != rows.end() && found->row == row ? &*found : nullptr;
}

} // namespace

SectionModel::SectionModel(const platform::TableSection& section, QObject* parent)
    : QAbstractListModel(parent), headerHeight_(section.headerHeight), footerHeight_(section.footerHeight) {
    read(section);
}

void SectionModel::read(const platform::TableSection& section) {
    const QString header = QString::fromStdString(section.header);
    const QString footer = QString::fromStdString(section.footer);
    if (header == header_ && footer == footer_) return;
    header_ = header;
    footer_ = footer;
    emit textChanged();
}

void SectionModel::put(const Place& place) {
    if (std::exchange(place_, place) != place) emit placed();
}

const Row* SectionModel::find(int row) const {
    return rowIn(rows_, row);
}

void SectionModel::show(std::vector<Row> rows) {
    for (int i = static_cast<int>(rows_.size()) - 1; i >= 0; --i) {
        if (rowIn(rows, rows_[std::size_t(i)].row)) continue;
        beginRemoveRows({}, i, i);
        rows_.erase(rows_.begin() + i);
        endRemoveRows();
    }
    for (int i = 0; i < static_cast<int>(rows.size()); ++i) {
        Row& row = rows[std::size_t(i)];
        if (!find(row.row)) {
            beginInsertRows({}, i, i);
            rows_.insert(rows_.begin() + i, std::move(row));
            endInsertRows();
        } else if (rows_[std::size_t(i)] != row) {
            rows_[std::size_t(i)] = std::move(row);
            emit dataChanged(index(i), index(i));
        }
    }
}

int SectionModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

QVariant SectionModel::data(const QModelIndex& index, int role) const {
    const int number = role - Qt::UserRole;
    if (!checkIndex(index, CheckIndexOption::IndexIsValid) || number < 0 || number >= std::ssize(kRoles)) return {};
    return kRoles[number].read(rows_[std::size_t(index.row())]);
}

QHash<int, QByteArray> SectionModel::roleNames() const {
    QHash<int, QByteArray> names;
    for (int role = Qt::UserRole; const Role& each : kRoles)
        names.insert(role++, each.name);
    return names;
}

} // namespace settings
