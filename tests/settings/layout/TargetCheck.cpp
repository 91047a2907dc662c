#include "tests/settings/layout/TargetCheck.h"

#include "tests/settings/layout/Items.h"

#include <QPointF>
#include <QQuickWindow>
#include <QSizeF>
#include <QVariant>

#include <algorithm>
#include <iterator>

namespace tests {

namespace {

constexpr int kFinger = 44;

bool isPressable(const QQuickItem& item) {
    if (!item.isEnabled()) return false;
    if (isA(item, "QQuickMouseArea")) // which has a property of its own for it
        return item.property("enabled").toBool() && (item.acceptedMouseButtons() & Qt::LeftButton);
    return isA(item, "QQuickAbstractButton") || isA(item, "QQuickSlider") || isA(item, "QQuickTextInput") ||
           isA(item, "QQuickTextEdit");
}

/// Whether a touch at that place reaches the item, as far as what it is in lets it through.
bool isReachedAt(const QQuickItem& item, QPointF place) {
    if (!item.contains(place)) return false;
    const QPointF inWindow = item.mapToScene(place);
    for (const QQuickItem* at = item.parentItem(); at; at = at->parentItem()) {
        if (isA(*at, "QQuickFlickable")) return true; // it scrolls
        if (at->clip() && !at->contains(at->mapFromScene(inWindow))) return false;
    }
    return true;
}

/// In how many columns and lines of points through its middle it takes a touch, as far as that matters.
QSizeF touchable(const QQuickItem& item) {
    const QPointF middle(item.width() / 2, item.height() / 2);
    const auto reach = [&](QPointF step) {
        int points = 0;
        while (points < kFinger && isReachedAt(item, middle + (points + 1) * step))
            ++points;
        return points;
    };
    return {1.0 + reach({1, 0}) + reach({-1, 0}), 1.0 + reach({0, 1}) + reach({0, -1})};
}

} // namespace

std::vector<std::string> targetFaults(const QQuickItem& root) {
    std::vector<std::string> faults;
    if (!root.isVisible() || root.opacity() == 0) return faults;
    if (isA(root, "TableSectionRow") || isA(root, "PageScrollIndicator") || isA(root, "PaneDivider")) return faults;
    if (isPressable(root)) {
        const QSizeF size = touchable(root);
        if (size.width() < kFinger || size.height() < kFinger)
            faults.push_back(
                (described(root) +
                 QStringLiteral(" takes a finger on %1 × %2 points only").arg(size.width()).arg(size.height()))
                    .toStdString());
    }
    for (const QQuickItem* child : root.childItems())
        std::ranges::copy(targetFaults(*child), std::back_inserter(faults));
    return faults;
}

} // namespace tests
