#pragma once

#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

#include <cstddef>

namespace settings {

class ElementModel;

/// A quantity of an element's, as assistive tools set it. GUI thread.
class AxisModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Axes come from snapshots")

    Q_PROPERTY(QString label READ label CONSTANT)
    Q_PROPERTY(bool vertical READ isVertical CONSTANT)
    Q_PROPERTY(double value READ value NOTIFY valueChanged)

  public:
    AxisModel(ElementModel& element, std::size_t index);

    [[nodiscard]] QString label() const;
    [[nodiscard]] bool isVertical() const;
    [[nodiscard]] double value() const;
    /// From 0 to 1, or the nearest that a touch reaches.
    Q_INVOKABLE void set(double value);

  signals:
    void valueChanged();

  private:
    ElementModel& element_;
    std::size_t index_;
};

} // namespace settings
