#pragma once

#include <QImage>
#include <QQuickItem>
#include <QQuickWindow>

namespace tests {

/// A window of that colour, and what is seen of it. All lengths are in points.
class Shown {
  public:
    explicit Shown(const QSize& size, const QColor& color = Qt::black) {
        window_.setColor(color);
        window_.resize(size);
        window_.show();
    }

    void add(QQuickItem& item, const QRectF& place) {
        item.setParentItem(window_.contentItem());
        item.setPosition(place.topLeft());
        item.setSize(place.size());
    }
    /// Its pixels, as they would be on a screen.
    [[nodiscard]] QImage picture() {
        QImage picture = window_.grabWindow().convertToFormat(QImage::Format_RGB32);
        picture.setDevicePixelRatio(1);
        return picture;
    }
    [[nodiscard]] QImage picture(const QRectF& part) { return picture().copy(pixels(part)); }
    [[nodiscard]] double ratio() const { return window_.devicePixelRatio(); }
    [[nodiscard]] QRect pixels(const QRectF& part) const {
        return QRectF(part.topLeft() * ratio(), part.size() * ratio()).toRect();
    }
    [[nodiscard]] QSize size() const { return window_.size() * ratio(); }

  private:
    QQuickWindow window_;
};

} // namespace tests
