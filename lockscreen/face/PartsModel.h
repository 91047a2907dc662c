#pragma once

#include "lockscreen/face/PartValue.h"

#include <QAbstractListModel>
#include <QtQml/qqmlregistration.h>

#include <algorithm>
#include <vector>

namespace lumora {

/// A list of parts for a Repeater: `part` is what PartValue.h makes of each. Setting it anew tells of those that differ,
/// so that what shows the others is left as it is. GUI thread.
class PartsModel : public QAbstractListModel {
    Q_OBJECT
    QML_ANONYMOUS

  public:
    using QAbstractListModel::QAbstractListModel;
    template<LookPart T>
    void set(const std::vector<T>& parts) {
        std::vector<QVariant> values(parts.size());
        std::ranges::transform(parts, values.begin(), [](const T& part) { return toQml(part); });
        setValues(std::move(values));
    }
    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

  private:
    void setValues(std::vector<QVariant> values);

    std::vector<QVariant> values_;
};

} // namespace lumora
