#include "settings/model/ElementModel.h"

#include <QPointer>

#include <algorithm>
#include <tuple>
#include <utility>

namespace settings {

using namespace platform;

namespace {

constexpr std::int64_t kFinger = -2; ///< no finger of a hand, nor the mouse

/// The last place along a side that a touch reaches, half a point before the end, which is outside of the frame.
double lastPlace(double side) {
    return side > 0.5 ? 1 - 0.5 / side : 0;
}

/// Where the mark comes to stand on its way to another place. It never turns back, though a value may have put it
/// nearer to the end than a touch can.
double reached(double from, double to, double side) {
    if (to == from) return from;
    const double place = std::clamp(to, 0.0, lastPlace(side));
    return (to > from) == (place > from) ? place : from;
}

} // namespace

AxisModel::AxisModel(ElementModel& element, std::size_t index, const ElementSnapshot::Axis& axis)
    : QObject(&element), element_(element), index_(index), label_(QString::fromStdString(axis.label)),
      vertical_(axis.vertical) {
    connect(&element, &ElementModel::valuesChanged, this, &AxisModel::valueChanged);
}

double AxisModel::value() const {
    return element_.valueOf(index_);
}

void AxisModel::set(double value) {
    if (value != this->value()) element_.setValue(index_, value);
}

ElementModel::ElementModel(SendEvent send, ElementSnapshot element, QObject* parent)
    : QObject(parent), send_(std::move(send)), element_(std::move(element)) {
    for (std::size_t i = 0; i < element_.axes.size(); ++i)
        axes_.push_back(new AxisModel(*this, i, element_.axes[i]));
    settle();
}

QRectF ElementModel::frame() const {
    const CGRect& frame = element_.frame;
    return {frame.origin.x, frame.origin.y, frame.size.width, frame.size.height};
}

bool ElementModel::hasAxis(bool vertical) const {
    return std::ranges::count(element_.axes, vertical, &ElementSnapshot::Axis::vertical) > 0;
}

bool ElementModel::isSameElement(const ElementSnapshot& element) const {
    const auto fixed = [](const auto& axis) { return std::tie(axis.label, axis.vertical, axis.reversed); };
    return element.label == element_.label && std::ranges::equal(element.axes, element_.axes, {}, fixed, fixed);
}

void ElementModel::read(const ElementSnapshot& element) {
    const bool sameFrame = element.frame == element_.frame;
    element_ = element;
    if (!sameFrame) emit frameChanged();
    if (underWay_ == 0) settle();
}

/// Puts the mark where the view has it.
void ElementModel::settle() {
    QPointF mark(0.5, 0.5);
    for (const UIAccessibilityElement::Axis& axis : element_.axes)
        (axis.vertical ? mark.ry() : mark.rx()) = axis.reversed ? 1 - axis.value : axis.value;
    mark_ = mark;
    emit valuesChanged();
}

double ElementModel::valueOf(std::size_t axis) const {
    const ElementSnapshot::Axis& which = element_.axes[axis];
    const double place = which.vertical ? mark_.y() : mark_.x();
    return which.reversed ? 1 - place : place;
}

void ElementModel::setValue(std::size_t axis, double value) {
    const ElementSnapshot::Axis& which = element_.axes[axis];
    QPointF mark = mark_;
    (which.vertical ? mark.ry() : mark.rx()) = which.reversed ? 1 - value : value;
    go(mark);
}

void ElementModel::press() {
    touch({0.5, 0.5});
}

void ElementModel::move(double across, double down) {
    go(mark_ + QPointF(movesAcross() ? across : 0, movesDown() ? down : 0));
}

void ElementModel::go(QPointF mark) {
    const CGSize size = element_.frame.size;
    const QPointF place(reached(mark_.x(), mark.x(), size.width), reached(mark_.y(), mark.y(), size.height));
    if (place.x() == mark_.x() && place.y() == mark_.y()) return;
    mark_ = place;
    emit valuesChanged();
    touch(place);
}

void ElementModel::touch(QPointF mark) {
    const auto& [origin, size] = element_.frame;
    const CGPoint point{origin.x + std::clamp(mark.x(), 0.0, lastPlace(size.width)) * size.width,
                        origin.y + std::clamp(mark.y(), 0.0, lastPlace(size.height)) * size.height};
    ++underWay_;
    send_(Touched{{{kFinger, UITouchPhase::began, point}}}, {});
    send_(Touched{{{kFinger, UITouchPhase::ended, point}}}, [self = QPointer(this)] {
        if (self && --self->underWay_ == 0) self->settle();
    });
}

} // namespace settings
