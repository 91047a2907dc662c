#pragma once

#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

namespace settings {

/// The desktop's clipboard. GUI thread.
class Clipboard : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

  public:
    Q_INVOKABLE void copy(const QString& text) const;
    Q_INVOKABLE [[nodiscard]] QString text() const;
};

} // namespace settings
