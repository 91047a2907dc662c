#pragma once

#include "lockscreen/face/PartValue.h"

#include <QAbstractListModel>
#include <QtQml/qqmlregistration.h>

#include <algorithm>
#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace lumora {

/// A list of parts for a Repeater: `part` is what PartValue.h makes of each. Whoever shows a part moves with it, and what
/// shows parts that stay as they are is left alone. GUI thread.
class PartsModel : public QAbstractListModel {
    Q_OBJECT
    QML_ANONYMOUS

  public:
    using QAbstractListModel::QAbstractListModel;
    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

  protected:
    using Make = std::function<QVariant(std::size_t row)>;

    /// Removes, moves and inserts rows, so that their names are these, each of which is there once.
    void arrange(const std::vector<std::string>& names, const Make& make);
    void change(std::size_t row, QVariant part);

  private:
    struct Row {
        std::string name;
        QVariant part;
    };

    void remove(std::size_t first, std::size_t end);
    void move(std::size_t from, std::size_t to);
    void insert(std::size_t first, std::vector<Row> rows);
    [[nodiscard]] std::size_t placeOf(const std::string& name) const;

    std::vector<Row> rows_;
};

/// By what a part is known again when the list is set anew: an icon by its application, others by their place.
[[nodiscard]] inline std::string rowName(const IconLook& icon, std::size_t) {
    return icon.identifier;
}
[[nodiscard]] inline std::string rowName(const auto&, std::size_t place) {
    return std::to_string(place);
}

/// The same, of one kind of part.
template<LookPart T>
class PartsOf final : public PartsModel {
  public:
    using PartsModel::PartsModel;

    void set(const std::vector<T>& parts) {
        if (parts == parts_) return;
        std::vector<std::string> names(parts.size());
        for (std::size_t i = 0; i < parts.size(); ++i)
            names[i] = rowName(parts[i], i);
        arrange(names, [&](std::size_t row) { return toQml(parts[row]); });
        for (std::size_t i = 0; i < parts.size(); ++i) {
            const auto former = std::ranges::find(names_, names[i]);
            if (former != names_.end() && !(parts_[static_cast<std::size_t>(former - names_.begin())] == parts[i]))
                change(i, toQml(parts[i]));
        }
        parts_ = parts;
        names_ = std::move(names);
    }

  private:
    std::vector<T> parts_;
    std::vector<std::string> names_;
};

} // namespace lumora
