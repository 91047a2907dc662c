#pragma once

#include "settings/host/Snapshot.h"
#include "settings/paint/PictureCache.h"

#include <QColor>
#include <QImage>
#include <QPainter>
#include <QRectF>
#include <QSizeF>

namespace settings {

/// How far a shadow reaches beyond the shape that casts it, in the unit of the blur.
[[nodiscard]] double marginOf(double blur);

/// Paints views at any number of pixels per point. Square corners lie on whole pixels, so that adjoining views leave no
/// seam; round ones are smooth.
///
///     ViewPainter painter;
///     painter.paint(qPainter, *page.view);
///
/// Keeps the shadows and scaled images that it has made. One thread at a time.
class ViewPainter {
  public:
    /// False for a view of which nothing is seen, nor of any in it. Any thread.
    [[nodiscard]] static bool paints(const ViewSnapshot& view);
    /// The painter's coordinates are those of the view's parent, in points; its state is left as it was.
    void paint(QPainter& painter, const ViewSnapshot& view);

  private:
    struct Shadow {
        QSizeF size;   ///< all in pixels of the screen
        QPointF phase; ///< where in its pixel the corner is
        double cornerRadius;
        double blur;
        QColor color;
        friend bool operator==(const Shadow&, const Shadow&) = default;
    };
    struct Picture {
        platform::UIImageRef image;
        const platform::Data* file; ///< the image's own, for one of its resolutions
        QSize size;                 ///< in pixels; empty for the file's own
        friend bool operator==(const Picture&, const Picture&) = default;
    };

    void paintShadow(QPainter& painter, const platform::CALayer& layer, const QRectF& box, double radius);
    void paintImage(QPainter& painter, const platform::UIImageRef& image, const QRectF& box);
    static QImage blurred(const Shadow& shadow);

    PictureCache<Shadow> shadows_;
    PictureCache<Picture> decoded_;
    PictureCache<Picture> scaled_;
};

} // namespace settings
