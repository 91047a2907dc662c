#include "lockscreen/face/PartsModel.h"

#include <utility>

namespace lumora {

int PartsModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(values_.size());
}

QVariant PartsModel::data(const QModelIndex& index, int role) const {
    return role == Qt::UserRole ? values_.at(static_cast<std::size_t>(index.row())) : QVariant();
}

QHash<int, QByteArray> PartsModel::roleNames() const {
    return {{Qt::UserRole, "part"}};
}

void PartsModel::setValues(std::vector<QVariant> values) {
    const std::size_t common = std::min(values.size(), values_.size());
    for (std::size_t i = 0; i < common; ++i) {
        if (values_[i] == values[i]) continue;
        values_[i] = std::move(values[i]);
        const QModelIndex changed = index(static_cast<int>(i));
        emit dataChanged(changed, changed);
    }
    if (values.size() < values_.size()) {
        beginRemoveRows({}, static_cast<int>(common), static_cast<int>(values_.size()) - 1);
        values_.resize(common);
        endRemoveRows();
    } else if (values.size() > common) {
        beginInsertRows({}, static_cast<int>(common), static_cast<int>(values.size()) - 1);
        values_.insert(values_.end(), std::make_move_iterator(values.begin() + static_cast<std::ptrdiff_t>(common)),
                       std::make_move_iterator(values.end()));
        endInsertRows();
    }
}

} // namespace lumora
