#include "settings/paint/ViewChange.h"

#include "settings/paint/ViewPainter.h"

namespace settings {

using namespace platform;

namespace {

bool lookAlike(const UIColorRef& one, const UIColorRef& other) {
    return one == other || (one && other && *one == *other);
}

bool lookAlike(CALayer one, const CALayer& other) {
    if (!lookAlike(one.backgroundColor, other.backgroundColor) || !lookAlike(one.borderColor, other.borderColor) ||
        !lookAlike(one.shadowColor, other.shadowColor))
        return false;
    one.backgroundColor = other.backgroundColor;
    one.borderColor = other.borderColor;
    one.shadowColor = other.shadowColor;
    return one == other;
}

/// Compares the views themselves, without what is in them.
bool lookAlike(const ViewSnapshot& one, const ViewSnapshot& other) {
    return one.frame == other.frame && lookAlike(one.layer, other.layer) && one.image == other.image &&
           one.drawing == other.drawing && one.subviews.size() == other.subviews.size();
}

/// All that a view paints on, with its shadow, in points of its parent.
QRectF extentOf(const ViewSnapshot& view) {
    const CGRect& frame = view.frame;
    const CALayer& layer = view.layer;
    const QRectF box(frame.origin.x, frame.origin.y, frame.size.width, frame.size.height);
    QRectF extent = box;
    if (layer.shadowOpacity > 0) {
        const double margin = marginOf(layer.shadowRadius);
        extent |= box.translated(layer.shadowOffset.width, layer.shadowOffset.height)
                      .adjusted(-margin, -margin, margin, margin);
    }
    if (layer.masksToBounds) return extent;
    for (const ViewSnapshot& subview : view.subviews)
        extent |= extentOf(subview).translated(box.topLeft());
    return extent;
}

} // namespace

QRectF changedArea(const ViewSnapshot& before, const ViewSnapshot& after) {
    if (!lookAlike(before, after)) return extentOf(before) | extentOf(after);
    QRectF area;
    for (std::size_t i = 0; i < after.subviews.size(); ++i)
        area |= changedArea(before.subviews[i], after.subviews[i]);
    return area.translated(after.frame.origin.x, after.frame.origin.y);
}

} // namespace settings
