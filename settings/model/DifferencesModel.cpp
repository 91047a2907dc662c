#include "settings/model/DifferencesModel.h"

#include <algorithm>
#include <utility>

namespace settings {

DifferencesModel::DifferencesModel(std::uint64_t page, QList<Difference> differences, QObject* parent)
    : QAbstractListModel(parent), page_(page), differences_(std::move(differences)) {
    for (Difference& difference : differences_)
        difference.chosen = difference.possible;
}

int DifferencesModel::chosenCount() const {
    return int(std::ranges::count(differences_, true, &Difference::chosen));
}

void DifferencesModel::choose(int difference, bool chosen) {
    if (difference < 0 || difference >= count() || !differences_[difference].possible) return;
    differences_[difference].chosen = chosen;
    emit dataChanged(index(difference), index(difference), {ChosenRole});
    emit this->chosen();
}

int DifferencesModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : count();
}

QVariant DifferencesModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) return {};
    const Difference& difference = differences_[index.row()];
    switch (role) {
    case TitleRole:
        return difference.title;
    case PathRole:
        return difference.path;
    case NowRole:
        return difference.now;
    case ThenRole:
        return difference.then;
    case PossibleRole:
        return difference.possible;
    case ChosenRole:
        return difference.chosen;
    default:
        return {};
    }
}

QHash<int, QByteArray> DifferencesModel::roleNames() const {
    return {{TitleRole, "title"}, {PathRole, "path"},         {NowRole, "now"},
            {ThenRole, "then"},   {PossibleRole, "possible"}, {ChosenRole, "chosen"}};
}

} // namespace settings
