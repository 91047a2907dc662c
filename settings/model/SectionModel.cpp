#include "settings/model/SectionModel.h"

#include <algorithm>
#include <tuple>
#include <utility>

namespace settings {
namespace {

enum Role : int {
    PlaceRole = Qt::UserRole,
    PositionRole,
    TopRole,
    FirstRole,
    LastRole,
    TitleRole,
    TitleFontRole,
    SpokenNameRole,
    IconRole,
    HasIconRole,
    MovableRole,
    EditingStyleRole,
    IndentedRole,
    MarkedRole
};

bool isSame(const SectionModel::Row& one, const SectionModel::Row& other) {
    const auto parts = [](const SectionModel::Row& row) {
        return std::tie(row.row, row.place, row.top, row.first, row.last, row.cell.title, row.cell.identifier,
                        row.cell.image, row.cell.movable, row.cell.editingStyle, row.cell.indented, row.cell.marked,
                        row.cell.font);
    };
    return parts(one) == parts(other);
}

bool comesBefore(const SectionModel::Row& one, int row) {
    return one.row < row;
}

} // namespace

SectionModel::SectionModel(const platform::TableSection& section, QObject* parent)
    : QAbstractListModel(parent), header_(QString::fromStdString(section.header)),
      footer_(QString::fromStdString(section.footer)), headerHeight_(section.headerHeight),
      footerHeight_(section.footerHeight) {
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

const SectionModel::Row* SectionModel::find(int row) const {
    const auto found = std::lower_bound(rows_.begin(), rows_.end(), row, comesBefore);
    return found != rows_.end() && found->row == row ? &*found : nullptr;
}

void SectionModel::show(std::vector<Row> rows) {
    const auto lacks = [](const std::vector<Row>& all, int row) {
        const auto found = std::lower_bound(all.begin(), all.end(), row, comesBefore);
        return found == all.end() || found->row != row;
    };
    for (int i = static_cast<int>(rows_.size()) - 1; i >= 0; --i) {
        if (!lacks(rows, rows_[std::size_t(i)].row)) continue;
        beginRemoveRows({}, i, i);
        rows_.erase(rows_.begin() + i);
        endRemoveRows();
    }
    for (int i = 0; i < static_cast<int>(rows.size()); ++i) {
        Row& row = rows[std::size_t(i)];
        if (lacks(rows_, row.row)) {
            beginInsertRows({}, i, i);
            rows_.insert(rows_.begin() + i, std::move(row));
            endInsertRows();
        } else if (!isSame(rows_[std::size_t(i)], row)) {
            rows_[std::size_t(i)] = std::move(row);
            emit dataChanged(index(i), index(i));
        }
    }
}

int SectionModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

QVariant SectionModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) return {};
    const Row& row = rows_[std::size_t(index.row())];
    const std::string& title = row.cell.title;
    switch (role) {
    case PlaceRole:
        return row.place;
    case PositionRole:
        return row.row + 1;
    case TopRole:
        return row.top;
    case FirstRole:
        return row.first;
    case LastRole:
        return row.last;
    case TitleRole:
        return QString::fromStdString(title);
    case TitleFontRole:
        return row.cell.font ? QVariant::fromValue(row.cell.font) : QVariant();
    case SpokenNameRole:
        return QString::fromStdString(title.empty() ? row.cell.identifier : title);
    case IconRole:
        return QVariant::fromValue(row.cell.image);
    case HasIconRole:
        return row.cell.image != nullptr;
    case MovableRole:
        return row.cell.movable;
    case EditingStyleRole:
        return row.cell.editingStyle;
    case IndentedRole:
        return row.cell.indented;
    case MarkedRole:
        return row.cell.marked;
    default:
        return {};
    }
}

QHash<int, QByteArray> SectionModel::roleNames() const {
    return {{PlaceRole, "place"},
            {PositionRole, "position"},
            {TopRole, "rowTop"},
            {FirstRole, "first"},
            {LastRole, "last"},
            {TitleRole, "title"},
            {SpokenNameRole, "spokenName"},
            {IconRole, "icon"},
            {HasIconRole, "hasIcon"},
            {MovableRole, "movable"},
            {MarkedRole, "marked"},
            {TitleFontRole, "titleFont"},
            {EditingStyleRole, "editingStyle"},
            {IndentedRole, "indented"}};
}

} // namespace settings
