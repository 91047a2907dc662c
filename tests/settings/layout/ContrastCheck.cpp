#include "tests/settings/layout/ContrastCheck.h"

#include "tests/settings/layout/Items.h"

#include <QRect>

#include <algorithm>
#include <cmath>
#include <map>
#include <utility>

namespace tests {

namespace {

constexpr int kAround = 3; // pixels of the ground beside a control

/// How light a colour is, from 0 to 1.
double luminance(QRgb color) {
    const auto part = [](int channel) {
        const double value = channel / 255.0;
        return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * part(qRed(color)) + 0.7152 * part(qGreen(color)) + 0.0722 * part(qBlue(color));
}

double contrast(QRgb one, QRgb other) {
    const auto [less, more] = std::minmax({luminance(one), luminance(other)});
    return (more + 0.05) / (less + 0.05);
}

bool isOneOf(const QQuickItem& item, std::initializer_list<const char*> names) {
    return std::ranges::any_of(names, [&](const char* name) { return tests::isA(item, name); });
}

class Look {
  public:
    Look(const QImage& picture, Contrast least) : picture_(picture), least_(least) {}

    void visit(const QQuickItem& item, QRect view) {
        if (!item.isVisible() || item.opacity() == 0 || !item.isEnabled()) return;
        const QRect place = item.mapRectToScene(QRectF(0, 0, item.width(), item.height())).toAlignedRect();
        if (item.clip()) view &= place;
        if (!place.isEmpty() && view.contains(place)) look(item, place);
        for (const QQuickItem* child : item.childItems())
            visit(*child, view);
    }
    [[nodiscard]] std::vector<std::string> faults() && { return std::move(faults_); }

  private:
    void look(const QQuickItem& item, const QRect& place) {
        if (isOneOf(item, {"QQuickText", "settings::FontTitle"})) {
            const bool isShown = tests::isA(item, "settings::FontTitle")
                                     ? item.property("drawn").toBool()
                                     : !item.property("text").toString().trimmed().isEmpty();
            if (isShown) expect(item, mostIn(place), least_.texts);
        } else if (isOneOf(item, {"Chevron", "CheckMark", "Handle"})) {
            expect(item, mostIn(place.adjusted(-1, -1, 1, 1)), least_.signs);
        } else if (tests::isA(item, "Knob")) {
            // On the track of its switch, or beside that of its slider.
            expect(item, mostAlong(place.center() - QPoint(0, place.height() / 2 + 1), {0, 1}, place.height() / 2),
                   least_.edges);
        } else if (tests::isA(item, "QQuickSlider")) {
            for (const int x : {place.left() + 2, place.right() - 2})
                expect(item, mostAlong({x, place.center().y() - 20}, {0, 1}, 20), least_.edges);
        } else if (const QQuickItem* parent = item.parentItem();
                   parent && parent->property("indicator").value<QQuickItem*>() == &item) {
            expect(item, mostAlong({place.left() - kAround, place.center().y()}, {1, 0}, 2 * kAround), least_.edges);
        } else if (tests::isA(item, "FocusRing")) {
            expect(item, mostAlong({place.left() + 2 * kAround, place.center().y()}, {-1, 0}, 2 * kAround + 1),
                   least_.signs);
        }
    }

    /// The greatest contrast of a pixel with what there is most of.
    [[nodiscard]] double mostIn(const QRect& place) const {
        std::map<QRgb, int> found;
        const QRect seen = place & picture_.rect();
        for (int y = seen.top(); y <= seen.bottom(); ++y)
            for (int x = seen.left(); x <= seen.right(); ++x)
                ++found[picture_.pixel(x, y)];
        const auto ground = std::ranges::max_element(found, {}, [](const auto& entry) { return entry.second; });
        double most = 1;
        for (const auto& [color, count] : found)
            most = std::max(most, contrast(color, ground->first));
        return most;
    }

    /// The greatest contrast of a pixel on the way with the one where it begins.
    [[nodiscard]] double mostAlong(QPoint from, QPoint step, int length) const {
        double most = 1;
        for (int i = 0; i <= length; ++i)
            if (const QPoint at = from + i * step; picture_.valid(at) && picture_.valid(from))
                most = std::max(most, contrast(picture_.pixel(from), picture_.pixel(at)));
        return most;
    }

    void expect(const QQuickItem& item, double found, double wanted) {
        if (found < wanted)
            faults_.push_back((described(item) + QStringLiteral(" has a contrast of %1, not %2").arg(found).arg(wanted))
                                  .toStdString());
    }

    const QImage& picture_;
    Contrast least_;
    std::vector<std::string> faults_;
};

} // namespace

std::vector<std::string> contrastFaults(const QQuickItem& root, const QImage& picture, Contrast least) {
    Look look(picture, least);
    look.visit(root, picture.rect());
    return std::move(look).faults();
}

} // namespace tests
