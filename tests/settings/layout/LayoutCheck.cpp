#include "tests/settings/layout/LayoutCheck.h"

#include "tests/settings/layout/Items.h"

#include <QAccessible>
#include <QJSValue>
#include <QQuickWindow>
#include <QRectF>
#include <QVariant>

#include <algorithm>
#include <iterator>
#include <utility>

namespace tests {

namespace {

constexpr double kTolerance = 1; // letters are placed in fractions of a point

bool isText(const QQuickItem& item) {
    return isA(item, "QQuickText") && !isA(item, "QQuickTextInput") && !isA(item, "QQuickTextEdit");
}

/// Something that a person looks at, and not only the ground below or the room around it.
bool isSeen(const QQuickItem& item) {
    if (isA(item, "settings::FontTitle")) return item.property("drawn").toBool();
    if (isText(item)) return !item.property("text").toString().trimmed().isEmpty();
    return isA(item, "QQuickTextInput") || isA(item, "QQuickTextEdit") || isA(item, "QQuickSlider") ||
           isA(item, "Chevron") || isA(item, "CheckMark") || isA(item, "Handle") || isA(item, "settings::IconItem") ||
           isA(item, "Spinner") ||
           (item.parentItem() && item.parentItem()->property("indicator").value<QQuickItem*>() == &item);
}

/// In the window.
QRectF placeOf(const QQuickItem& item) {
    return item.mapRectToScene(QRectF(0, 0, item.width(), item.height()));
}

double number(const QQuickItem& item, const char* name) {
    return item.property(name).toDouble();
}

/// What the letters of a text have for themselves.
QSizeF roomOf(const QQuickItem& text) {
    return {text.width() - number(text, "leftPadding") - number(text, "rightPadding"),
            text.height() - number(text, "topPadding") - number(text, "bottomPadding")};
}

QSizeF lettersOf(const QQuickItem& text) {
    return {number(text, "contentWidth"), number(text, "contentHeight")};
}

/// Where the letters of a text stand, or all of another item, in the window.
QRectF seenOf(const QQuickItem& item) {
    if (!isText(item)) return placeOf(item);
    const QSizeF free = roomOf(item) - lettersOf(item);
    const int across = item.property("effectiveHorizontalAlignment").toInt();
    const int down = item.property("verticalAlignment").toInt();
    const double x = across & Qt::AlignRight ? free.width() : across & Qt::AlignHCenter ? free.width() / 2 : 0;
    const double y = down & Qt::AlignBottom ? free.height() : down & Qt::AlignVCenter ? free.height() / 2 : 0;
    return item.mapRectToScene(
        QRectF({number(item, "leftPadding") + x, number(item, "topPadding") + y}, lettersOf(item)));
}

bool contains(const QRectF& outer, const QRectF& inner) {
    return outer.adjusted(-kTolerance, -kTolerance, kTolerance, kTolerance).contains(inner);
}

/// All that it scrolls over, in the window as if nothing were scrolled away.
QRectF scrolledOver(const QQuickItem& flickable) {
    const auto* content = flickable.property("contentItem").value<QQuickItem*>();
    return content->mapRectToScene(QRectF(number(flickable, "originX"), number(flickable, "originY"),
                                          std::max(number(flickable, "contentWidth"), flickable.width()),
                                          std::max(number(flickable, "contentHeight"), flickable.height())));
}

/// Whether the item is in the window, or can be brought there by all that scrolls around it.
bool isInReach(const QQuickItem& item, const QRectF& window) {
    QRectF place = seenOf(item);
    for (const QQuickItem* at = item.parentItem(); at; at = at->parentItem()) {
        const bool scrolls = isA(*at, "QQuickFlickable");
        if ((scrolls || at->clip()) && !contains(scrolls ? scrolledOver(*at) : placeOf(*at), place)) return false;
        if (scrolls) place = placeOf(*at);
    }
    return contains(window, place);
}

bool overlap(const QRectF& one, const QRectF& other) {
    const QRectF common = one.intersected(other);
    return common.width() > kTolerance && common.height() > kTolerance;
}

/// What an assistive tool is told of the text, by itself or by the row that it is in.
bool isSpokenInFull(const QQuickItem& item) {
    const QString text = item.property("text").toString();
    for (const QQuickItem* at = &item; at; at = at->parentItem()) {
        QAccessibleInterface* spoken = QAccessible::queryAccessibleInterface(const_cast<QQuickItem*>(at));
        const bool isTold = spoken && spoken->parent() && spoken->parent()->indexOfChild(spoken) >= 0;
        if (isTold && spoken->text(QAccessible::Name) == text) return true;
        if (isA(*at, "TableRow") || isA(*at, "NavigationBar")) return false;
    }
    return false;
}

class Check {
  public:
    explicit Check(const QQuickItem& root) : root_(root), window_(placeOf(root)) {}
    [[nodiscard]] std::vector<std::string> ofLayout() && {
        visit(root_);
        findOverlaps();
        return std::move(faults_);
    }
    [[nodiscard]] std::vector<std::string> ofReach() && {
        checkReach(root_);
        return std::move(faults_);
    }
    [[nodiscard]] std::vector<std::string> ofFocus() && {
        checkFocus();
        return std::move(faults_);
    }

  private:
    struct Seen {
        const QQuickItem* item;
        QRectF place;
        const QQuickItem* scroller; ///< what it scrolls with
    };

    void visit(const QQuickItem& item) {
        if (!item.isVisible() || item.opacity() == 0) return;
        if (item.width() <= 0 && item.property("text").isValid() && isSeen(item)) complain(item, "has no room at all");
        if (isSeen(item)) {
            if (isText(item)) checkText(item);
            checkPlace(item);
            seen_.push_back({&item, seenOf(item), around(item, "QQuickFlickable")});
        }
        for (const QQuickItem* child : item.childItems())
            visit(*child);
    }

    void checkReach(const QQuickItem& item) {
        if (!item.isVisible() || item.opacity() == 0) return;
        if ((isSeen(item) || isA(item, "Element_")) && !isInReach(item, window_)) complain(item, "is out of reach");
        for (const QQuickItem* child : item.childItems())
            checkReach(*child);
    }

    void checkText(const QQuickItem& item) {
        if (item.property("truncated").toBool()) {
            if (!around(item, "TableRow", "NavigationBar"))
                complain(item, "is cut off");
            else if (!isSpokenInFull(item))
                complain(item, "is cut off, and no assistive tool is told the rest");
            return;
        }
        const QSizeF letters = lettersOf(item);
        const QSizeF room = roomOf(item);
        if (letters.width() > room.width() + kTolerance)
            complain(item, QStringLiteral("is wider than its item, %1 > %2").arg(letters.width()).arg(room.width()));
        if (letters.height() > room.height() + kTolerance)
            complain(item, QStringLiteral("is higher than its item, %1 > %2").arg(letters.height()).arg(room.height()));
    }

    /// Within its row and everything else that clips, and within the window's sides.
    void checkPlace(const QQuickItem& item) {
        const QRectF place = seenOf(item);
        if (place.left() < window_.left() - kTolerance || place.right() > window_.right() + kTolerance)
            complain(item, "stands out of the window");
        for (const QQuickItem* at = item.parentItem(); at; at = at->parentItem()) {
            if (isA(*at, "QQuickFlickable")) return; // what scrolls
            const bool holds = at->clip() || isA(*at, "QQuickControl") || isA(*at, "QQuickAbstractButton") ||
                               isA(*at, "TableRow") || isA(*at, "NavigationBar");
            if (holds && !contains(placeOf(*at), place))
                return complain(item, "stands out of its " +
                                          QString::fromLatin1(at->metaObject()->className()).section(u'_', 0, 0));
        }
    }

    /// All of what has the focus is in view, or a good part of what is higher than the view.
    void checkFocus() {
        const QQuickItem* item = root_.window() ? root_.window()->activeFocusItem() : nullptr;
        if (!item || item == root_.window()->contentItem()) return;
        const QRectF place = isA(*item, "QQuickTextEdit")
                                 ? item->mapRectToScene(item->property("cursorRectangle").toRectF())
                                 : placeOf(*item);
        QRectF view = window_;
        for (const QQuickItem* at = item->parentItem(); at; at = at->parentItem())
            if (at->clip()) view &= placeOf(*at);
        const double inView = place.intersected(view).height();
        const bool fits = place.height() <= view.height();
        if (fits ? inView < place.height() - kTolerance : inView < view.height() / 2)
            complain(
                *item,
                QStringLiteral("has the focus, and %1 of its %2 points are in view").arg(inView).arg(place.height()));
    }

    void findOverlaps() {
        const auto topOf = [](const Seen& seen) { return seen.place.top(); };
        std::ranges::stable_sort(seen_, {}, topOf);
        for (std::size_t i = 0; i < seen_.size(); ++i) {
            for (std::size_t j = i + 1; j < seen_.size() && topOf(seen_[j]) < seen_[i].place.bottom(); ++j) {
                const Seen& one = seen_[i];
                const Seen& other = seen_[j];
                if (one.scroller != other.scroller || !overlap(one.place, other.place)) continue;
                if (one.item->isAncestorOf(other.item) || other.item->isAncestorOf(one.item)) continue;
                complain(*one.item, "overlaps " + described(*other.item));
            }
        }
    }

    void complain(const QQuickItem& item, const QString& what) {
        faults_.push_back((described(item) + " " + what).toStdString());
    }

    const QQuickItem& root_;
    QRectF window_;
    std::vector<Seen> seen_;
    std::vector<std::string> faults_;
};

} // namespace

std::vector<std::string> layoutFaults(const QQuickItem& root) {
    return Check(root).ofLayout();
}

std::vector<std::string> reachFaults(const QQuickItem& root) {
    return Check(root).ofReach();
}

std::vector<std::string> focusFaults(const QQuickItem& root) {
    return Check(root).ofFocus();
}

std::vector<TextSize> textSizes(const QQuickItem& root) {
    std::vector<TextSize> sizes;
    if (!root.isVisible() || root.opacity() == 0) return sizes;
    if (isText(root) && isSeen(root)) {
        // What the text was drawn with, when it had to shrink.
        const int pixels = root.property("fontInfo").value<QJSValue>().property("pixelSize").toInt();
        sizes.push_back({&root, root.property("text").toString(), pixels});
    }
    for (const QQuickItem* child : root.childItems())
        std::ranges::copy(textSizes(*child), std::back_inserter(sizes));
    return sizes;
}

std::vector<std::string> smallerThan(const std::vector<TextSize>& before, const QQuickItem& root) {
    std::vector<std::string> faults;
    for (const TextSize& now : textSizes(root)) {
        const auto same = [&](const TextSize& other) { return other.item == now.item && other.text == now.text; };
        const auto former = std::ranges::find_if(before, same);
        if (former != before.end() && now.pixels < former->pixels)
            faults.push_back(
                (described(*now.item) + QStringLiteral(" is smaller, %1 < %2").arg(now.pixels).arg(former->pixels))
                    .toStdString());
    }
    return faults;
}

} // namespace tests
