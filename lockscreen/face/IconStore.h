#pragma once

#include "lockscreen/phone/Installation.h"

#include <QHash>
#include <QImage>
#include <QObject>
#include <QString>

#include <memory>

namespace lumora {

/// The pictures of the icons, each of one size that is large enough for all places on the screen. They come when they
/// are drawn, which other programs do. GUI thread.
class IconStore : public QObject {
    Q_OBJECT

  public:
    using QObject::QObject;

    void setInstallation(std::shared_ptr<const Installation> installation);
    /// How many pixels the largest icon on the screen has; those in the store are at least as large, up to 1024.
    void setLargest(double pixels);
    /// Null while it is not there, and where there is none.
    [[nodiscard]] QImage icon(const QString& identifier);
    /// Whether none is awaited.
    [[nodiscard]] bool isComplete() const;

  signals:
    /// An icon, or an empty name for all of them.
    void changed(const QString& identifier);

  private:
    struct Kept {
        QImage image;
        IconOrder order; ///< null once the image is there, or it is known that there is none
    };

    void take(const QString& identifier, int pixels, const QImage& image);

    std::shared_ptr<const Installation> installation_;
    int pixels_ = 128;
    QHash<QString, Kept> kept_;
};

} // namespace lumora
