#pragma once

#include "lockscreen/face/PartValue.h"

#include <QAbstractListModel>
#include <QPointF>
#include <QtQml/qqmlregistration.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace lumora {

/// A list of parts for a Repeater: `part` is what PartValue.h makes of each. Frames in it begin at `origin`, on the page of
/// that number; both stay 0 but for icons. Whoever shows a part moves with it, and what shows parts that stay as they are
/// is left alone. GUI thread.
class PartsModel : public QAbstractListModel {
    Q_OBJECT
    QML_ANONYMOUS

  public:
    using QAbstractListModel::QAbstractListModel;
    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

  protected:
    struct Place {
        QPointF origin;
        int page = 0;
        friend bool operator==(const Place&, const Place&) = default;
    };
    struct Row {
        std::string name;
        QVariant part;
        Place place;
    };
    using Make = std::function<Row(std::size_t row)>;

    /// Removes, moves and inserts rows, so that their names are these, each of which is there once.
    void arrange(const std::vector<std::string>& names, const Make& make);
    void change(std::size_t row, QVariant part);
    void change(std::size_t row, const Place& place);

  private:
    void tell(std::size_t row, const QList<int>& roles);
    void remove(std::size_t first, std::size_t end);
    void move(std::size_t from, std::size_t to);
    void insert(std::size_t first, std::vector<Row> rows);
    [[nodiscard]] std::size_t placeOf(const std::string& name) const;

    std::vector<Row> rows_;
};

/// The same, of one kind of part.
template<LookPart T>
class PartsOf final : public PartsModel {
  public:
    using PartsModel::PartsModel;

    void set(const std::vector<T>& parts) {
        std::vector<Placed> next(parts.size());
        std::vector<std::string> names(parts.size());
        for (std::size_t i = 0; i < parts.size(); ++i) {
            next[i] = placed(parts[i], i);
            names[i] = next[i].name;
        }
        arrange(names, [&](std::size_t row) { return Row{names[row], toQml(next[row].part), next[row].place}; });
        for (std::size_t i = 0; i < next.size(); ++i) {
            const auto former = std::ranges::find(shown_, next[i].name, &Placed::name);
            if (former == shown_.end()) continue;
            if (!(former->place == next[i].place)) change(i, next[i].place);
            if (!(former->part == next[i].part)) change(i, toQml(next[i].part));
        }
        shown_ = std::move(next);
    }

  private:
    /// A part, how it is known again when the list is set anew, and its place.
    struct Placed {
        std::string name;
        T part;
        Place place;
    };

    /// An icon is known by its application, and looks the same wherever it stands.
    static Placed placed(const IconLook& icon, std::size_t) {
        Placed one{icon.identifier, icon, {{icon.frame.origin.x, icon.frame.origin.y}, icon.page}};
        one.part.page = 0;
        for (platform::CGRect* frame : {&one.part.frame, &one.part.picture.frame, &one.part.label.frame,
                                        &one.part.label.shade.frame, &one.part.badge.frame}) {
            if (*frame == platform::CGRect{}) continue; // of what is not there
            frame->origin.x = evened(frame->origin.x - one.place.origin.x());
            frame->origin.y = evened(frame->origin.y - one.place.origin.y());
        }
        return one;
    }
    static Placed placed(const auto& part, std::size_t place) { return {std::to_string(place), part, {}}; }

    /// Without what subtracting leaves at the end of a number.
    static double evened(double length) { return std::round(length * 65536) / 65536; }

    std::vector<Placed> shown_;
};

} // namespace lumora
