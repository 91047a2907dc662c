#pragma once

#include "appview/Drawing.h"

#include <QColor>
#include <QImage>
#include <QSizeF>
#include <QString>

#include <atomic>
#include <functional>

namespace lumora {

/// Where and how an App View's drawing is shown.
struct DrawingPlace {
    QSizeF points;               ///< of the view
    double scale = 1;            ///< pixels to such a point
    QColor ink = QColor("#fff"); ///< of texts
    friend bool operator==(const DrawingPlace&, const DrawingPlace&) = default;
    /// Whether texts are light on dark.
    [[nodiscard]] bool isDark() const { return ink.lightnessF() > 0.5F; }
};

/// A picture of the plug-in's bundle, so many pixels wide and high; null if there is none.
using BundlePicture = std::function<QImage(const std::string& name, int pixels)>;

/// Paints a drawing on a transparent ground. Null once `cancelled` is set, and if it takes more than two seconds. Any
/// thread.
[[nodiscard]] QImage paintDrawing(const Drawing& drawing, const DrawingPlace& place, const BundlePicture& picture,
                                  const std::atomic<bool>& cancelled);

/// What the drawing has in the view's head; the last caption counts.
[[nodiscard]] QString captionOf(const Drawing& drawing);
/// All texts of a drawing in their order.
[[nodiscard]] QString wordsOf(const Drawing& drawing);

} // namespace lumora
