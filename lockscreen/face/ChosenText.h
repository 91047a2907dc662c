#pragma once

#include "pixels/DrawnItem.h"

#include <QColor>
#include <QString>
#include <QStringList>
#include <QtQml/qqmlregistration.h>

namespace lumora {

/// A centred text in a font that the user has chosen: by its PostScript name, or "Default". Breaks between words where it
/// may have several `lines`, and is cut with an ellipsis where there is no room for more. GUI thread.
class ChosenText : public lumora::DrawnItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QString text MEMBER text_ NOTIFY changed)
    Q_PROPERTY(QString font MEMBER font_ NOTIFY changed)
    Q_PROPERTY(double size MEMBER size_ NOTIFY changed)
    Q_PROPERTY(QColor color MEMBER color_ NOTIFY changed)
    Q_PROPERTY(int lines MEMBER lines_ NOTIFY changed)
    Q_PROPERTY(bool isClock MEMBER isClock_ NOTIFY changed)

  public:
    explicit ChosenText(QQuickItem* parent = nullptr);

  signals:
    void changed();

  private:
    QImage draw(const QSize& pixels, double ratio) override;
    [[nodiscard]] double widthOf(const QString& line) const;
    [[nodiscard]] QStringList broken() const;
    [[nodiscard]] QString cut(QString line) const;
    void drawLine(QPainter& painter, const QString& line, double baseline) const;

    QString text_;
    QString font_ = QStringLiteral("Default");
    double size_ = 18;
    QColor color_ = Qt::white;
    int lines_ = 1;
    bool isClock_ = false;
};

} // namespace lumora
