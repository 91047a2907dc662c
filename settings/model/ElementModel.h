#pragma once

#include "settings/host/Event.h"
#include "settings/host/Snapshot.h"
#include "settings/model/AxisModel.h"

#include <QList>
#include <QObject>
#include <QPointF>
#include <QRectF>
#include <QString>
#include <QtQml/qqmllist.h>
#include <QtQml/qqmlregistration.h>

#include <cstdint>

namespace settings {

/// Something on a page's view that the keyboard and assistive tools reach. What they do becomes a touch at the place
/// that means it, a point within the frame; the mark stands where it was put last until the view has answered. GUI
/// thread.
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

    [[nodiscard]] QRectF frame() const;
    [[nodiscard]] QString label() const { return QString::fromStdString(element_.label); }
    [[nodiscard]] bool movesAcross() const;
    [[nodiscard]] bool movesDown() const;
    [[nodiscard]] const ElementSnapshot& snapshot() const { return element_; }

    /// True when nothing but the frame and the values may differ.
    [[nodiscard]] bool isSameElement(const ElementSnapshot& element) const;
    void read(const ElementSnapshot& element);

    /// A touch in the middle.
    Q_INVOKABLE void press();
    /// Moves the mark by so many widths and heights of the frame, as far as it goes.
    Q_INVOKABLE void move(double across, double down);

    [[nodiscard]] double valueOf(std::size_t axis) const;
    void setValue(std::size_t axis, double value);

  signals:
    void frameChanged();
    void valuesChanged();

  private:
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
