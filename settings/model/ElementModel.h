#pragma once

#include "settings/host/Event.h"

#include <QList>
#include <QObject>
#include <QPointF>
#include <QRectF>
#include <QString>
#include <QtQml/qqmllist.h>
#include <QtQml/qqmlregistration.h>

namespace settings {

class ElementModel;

/// A quantity of an element, from 0 to 1, as assistive tools read and set it. GUI thread.
class AxisModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Axes come from snapshots")

    Q_PROPERTY(QString label MEMBER label_ CONSTANT)
    Q_PROPERTY(bool vertical MEMBER vertical_ CONSTANT)
    Q_PROPERTY(double value READ value NOTIFY valueChanged)

  public:
    AxisModel(ElementModel& element, std::size_t index, const ElementSnapshot::Axis& axis);

    [[nodiscard]] double value() const;
    /// Sets the value, or the nearest one that a touch reaches.
    Q_INVOKABLE void set(double value);

  signals:
    void valueChanged();

  private:
    ElementModel& element_;
    std::size_t index_;
    QString label_;
    bool vertical_;
};

/// Something on a page's view that the keyboard and assistive tools reach. Each of their actions becomes a touch at the
/// place that means it. The mark, a point within the frame, stands where it was put last until the view has answered.
/// GUI thread.
class ElementModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Elements come from snapshots")

    Q_PROPERTY(QRectF frame READ frame NOTIFY frameChanged)
    Q_PROPERTY(QString label READ label CONSTANT)
    Q_PROPERTY(bool movesAcross READ movesAcross CONSTANT)
    Q_PROPERTY(bool movesDown READ movesDown CONSTANT)
    Q_PROPERTY(QQmlListProperty<settings::AxisModel> axes READ listedAxes CONSTANT)

  public:
    ElementModel(SendEvent send, ElementSnapshot element, QObject* parent);

    /// In points of the page.
    [[nodiscard]] QRectF frame() const;
    [[nodiscard]] QString label() const { return QString::fromStdString(element_.label); }
    [[nodiscard]] bool movesAcross() const { return hasAxis(false); }
    [[nodiscard]] bool movesDown() const { return hasAxis(true); }

    /// Whether the snapshot differs from this element in its frame and its values at most.
    [[nodiscard]] bool isSameElement(const ElementSnapshot& element) const;
    /// Takes up a newer snapshot of the same element.
    void read(const ElementSnapshot& element);

    /// Touches the middle.
    Q_INVOKABLE void press();
    /// Moves the mark by so many widths and heights of the frame, as far as it goes.
    Q_INVOKABLE void move(double across, double down);

    [[nodiscard]] double valueOf(std::size_t axis) const;
    void setValue(std::size_t axis, double value);

  signals:
    void frameChanged();
    void valuesChanged();

  private:
    [[nodiscard]] bool hasAxis(bool vertical) const;
    void settle();
    void go(QPointF mark);
    void touch(QPointF mark);
    QQmlListProperty<AxisModel> listedAxes() { return {this, &axes_}; }

    SendEvent send_;
    ElementSnapshot element_;
    QList<AxisModel*> axes_;
    QPointF mark_;     ///< in parts of the frame's sides
    int underWay_ = 0; ///< touches that the view has not answered
};

} // namespace settings
