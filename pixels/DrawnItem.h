#pragma once

#include <QImage>
#include <QQuickItem>
#include <QSize>

#include <functional>

class QPainter;

namespace lumora {

/// An item that draws a picture of itself in the pixels of its window. The picture is shown pixel by pixel, where a
/// QQuickPaintedItem's is a part of a point larger or smaller and goes through a filter, which costs several times as much
/// with three pixels to a point. Items that look alike may share one. Their classes name this one in full,
/// `lumora::DrawnItem`, by which alone QML's tools know it. GUI thread.
class DrawnItem : public QQuickItem {
    Q_OBJECT

  public:
    explicit DrawnItem(QQuickItem* parent = nullptr);

  protected:
    /// A picture of that size, for `ratio` pixels to a point; a null one for nothing. One of another size is stretched.
    [[nodiscard]] virtual QImage draw(const QSize& pixels, double ratio) = 0;
    /// The item looks different now.
    void redraw();
    /// What `paint` draws on a picture of that size, in points, with smooth edges.
    [[nodiscard]] static QImage painted(const QSize& pixels, double ratio,
                                        const std::function<void(QPainter& painter)>& paint);

    QSGNode* updatePaintNode(QSGNode* node, UpdatePaintNodeData* data) override;
    void geometryChange(const QRectF& geometry, const QRectF& former) override;
    void itemChange(ItemChange change, const ItemChangeData& data) override;

  private:
    bool stale_ = true; ///< what is shown is not what should be
};

} // namespace lumora
