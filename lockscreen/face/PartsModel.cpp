#include "lockscreen/face/PartsModel.h"

#include <iterator>
#include <unordered_map>
#include <utility>

namespace lumora {
namespace {

enum PartRole : int { kPart = Qt::UserRole, kOrigin, kPage };

} // namespace

int PartsModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

QVariant PartsModel::data(const QModelIndex& index, int role) const {
    const Row& row = rows_.at(static_cast<std::size_t>(index.row()));
    switch (role) {
    case kPart:
        return row.part;
    case kOrigin:
        return row.place.origin;
    case kPage:
        return row.place.page;
    default:
        return {};
    }
}

QHash<int, QByteArray> PartsModel::roleNames() const {
    return {{kPart, "part"}, {kOrigin, "origin"}, {kPage, "page"}};
}

void PartsModel::arrange(const std::vector<std::string>& names, const Make& make) {
    std::unordered_map<std::string, std::size_t> goals;
    for (std::size_t i = 0; i < names.size(); ++i)
        goals.emplace(names[i], i);
    for (std::size_t end = rows_.size(); end > 0;) {
        std::size_t first = end;
        while (first > 0 && !goals.contains(rows_[first - 1].name))
            --first;
        if (first < end) remove(first, end);
        end = first > 0 ? first - 1 : 0;
    }
    for (std::size_t place = 0; place < names.size(); ++place) {
        std::vector<Row> fresh;
        std::size_t next = place;
        for (; next < names.size() && placeOf(names[next]) == rows_.size(); ++next)
            fresh.push_back(make(next));
        if (!fresh.empty()) insert(place, std::move(fresh));
        if (next == names.size()) return;
        place = next;
        // The row that is wanted here comes, or those in between go: whoever has the longer way.
        for (std::size_t from = placeOf(names[place]); from > place; from = placeOf(names[place])) {
            const std::size_t goal = std::min(goals.at(rows_[place].name), rows_.size() - 1);
            if (goal > from)
                move(place, goal);
            else
                move(from, place);
        }
    }
}

void PartsModel::change(std::size_t row, QVariant part) {
    rows_[row].part = std::move(part);
    tell(row, {kPart});
}

void PartsModel::change(std::size_t row, const Place& place) {
    rows_[row].place = place;
    tell(row, {kOrigin, kPage});
}

void PartsModel::tell(std::size_t row, const QList<int>& roles) {
    const QModelIndex changed = index(static_cast<int>(row));
    emit dataChanged(changed, changed, roles);
}

void PartsModel::remove(std::size_t first, std::size_t end) {
    beginRemoveRows({}, static_cast<int>(first), static_cast<int>(end) - 1);
    rows_.erase(rows_.begin() + static_cast<std::ptrdiff_t>(first), rows_.begin() + static_cast<std::ptrdiff_t>(end));
    endRemoveRows();
}

void PartsModel::move(std::size_t from, std::size_t to) {
    // The toolkit counts the places between rows, of which there are two beside the row itself.
    beginMoveRows({}, static_cast<int>(from), static_cast<int>(from), {}, static_cast<int>(to > from ? to + 1 : to));
    const auto row = [this](std::size_t place) { return rows_.begin() + static_cast<std::ptrdiff_t>(place); };
    if (to > from)
        std::rotate(row(from), row(from + 1), row(to + 1));
    else
        std::rotate(row(to), row(from), row(from + 1));
    endMoveRows();
}

void PartsModel::insert(std::size_t first, std::vector<Row> rows) {
    beginInsertRows({}, static_cast<int>(first), static_cast<int>(first + rows.size()) - 1);
    rows_.insert(rows_.begin() + static_cast<std::ptrdiff_t>(first), std::make_move_iterator(rows.begin()),
                 std::make_move_iterator(rows.end()));
    endInsertRows();
}

std::size_t PartsModel::placeOf(const std::string& name) const {
    return static_cast<std::size_t>(std::ranges::find(rows_, name, &Row::name) - rows_.begin());
}

} // namespace lumora
