#include "lockscreen/face/ReadPicture.h"

#include <QFileInfo>
#include <QImageReader>
#include <QPainter>

#include <utility>

namespace lumora {
namespace {

using platform::Result;

/// Beyond this, decoders would need more than a hundred megabytes for what they keep meanwhile.
constexpr qint64 kMostPixels = 64'000'000;
constexpr int kMostMegabytes = 256;

/// The middle of a picture of that size, in that shape.
QRect middle(const QSize& picture, const QSize& shape) {
    QRect part({}, shape.scaled(picture, Qt::KeepAspectRatio));
    part.moveCenter(QRect({}, picture).center());
    return part;
}

QImage overBlack(QImage picture) {
    if (!picture.hasAlphaChannel()) return std::move(picture).convertToFormat(QImage::Format_RGB32);
    QImage opaque(picture.size(), QImage::Format_RGB32);
    opaque.fill(Qt::black);
    QPainter(&opaque).drawImage(0, 0, picture);
    return opaque;
}

} // namespace

Result<QImage> readPicture(const QString& file, const QSize& pixels) {
    const auto failure = [&](const QString& why) {
        return Result<QImage>::failure(
            QStringLiteral("the picture %1 cannot be read: %2").arg(file, why).toStdString());
    };
    if (!QFileInfo(file).isFile()) return failure(QStringLiteral("there is no such file"));
    QImageReader::setAllocationLimit(kMostMegabytes); // for all readers, but there are no others
    QImageReader reader(file);
    reader.setDecideFormatFromContent(true);
    reader.setAutoTransform(true);
    const QSize size = reader.size();
    if (!reader.canRead()) return failure(reader.errorString());
    if (size.isEmpty()) return failure(QStringLiteral("it tells no size"));
    if (static_cast<qint64>(size.width()) * size.height() > kMostPixels)
        return failure(QStringLiteral("%1 × %2 pixels are too many").arg(size.width()).arg(size.height()));

    // What a camera has stored lying on its side is turned after it is read.
    const bool onItsSide = reader.transformation() & QImageIOHandler::TransformationRotate90;
    const QSize wanted = onItsSide ? pixels.transposed() : pixels;
    const QSize scaled = size.scaled(wanted, Qt::KeepAspectRatioByExpanding);
    reader.setScaledSize(scaled);
    reader.setScaledClipRect(middle(scaled, wanted));
    QImage picture = reader.read();
    if (picture.isNull()) return failure(reader.errorString());
    if (picture.size() != pixels) picture = picture.scaled(pixels, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    return overBlack(std::move(picture));
}

} // namespace lumora
