#include "lockscreen/face/Backdrop.h"

#include "lockscreen/Device.h"
#include "lockscreen/face/Blur.h"
#include "lockscreen/face/MeasureLuminance.h"
#include "lockscreen/face/ReadPicture.h"
#include "lockscreen/face/Wallpapers.h"

#include <QMetaObject>

#include <cmath>
#include <utility>

namespace lumora {

using platform::Result;

namespace {

/// The radius of each box of the blur, in units of the screen.
constexpr double kBlurRadius = 26;
/// The edge of a cell of the luminance, in points.
constexpr int kCell = 12;

double unitOf(const QSize& points) {
    Device device;
    device.size = {double(points.width()), double(points.height())};
    return device.unit();
}

QSize pixelsOf(const BackdropOrder& order) {
    return (QSizeF(order.points) * order.ratio).toSize().expandedTo({1, 1});
}

} // namespace

Result<BackdropPictures> makeBackdrop(const BackdropOrder& order) {
    const QSize& points = order.points;
    Result<QImage> read = readPicture(wallpaperFile(order.picture, points.width() > points.height()), pixelsOf(order));
    if (!read) return Result<BackdropPictures>::failure(read.error());
    BackdropPictures made;
    made.sharp = std::move(read).value();
    made.soft = quartered(made.sharp);
    blur(made.soft, static_cast<int>(std::lround(kBlurRadius * unitOf(points) * order.ratio / kSoftScale)));
    made.luminance = measureLuminance(made.sharp, points / kCell);
    made.blurred = measureLuminance(made.soft, points / kCell);
    made.ratio = order.ratio;
    return made;
}

Backdrop::Backdrop(QObject* parent) : QObject(parent), worker_([this](const std::stop_token& stop) { work(stop); }) {
}

Backdrop::~Backdrop() = default;

void Backdrop::order(const BackdropOrder& order) {
    {
        const std::lock_guard held(mutex_);
        waiting_ = {order, ++last_};
    }
    ordered_.notify_one();
}

Result<void> Backdrop::make(const BackdropOrder& order) {
    Result<BackdropPictures> made = makeBackdrop(order);
    if (!made) return Result<void>::failure(made.error());
    take(++last_, std::move(made));
    return {};
}

void Backdrop::work(const std::stop_token& stop) {
    std::unique_lock held(mutex_);
    while (ordered_.wait(held, stop, [this] { return waiting_.has_value(); }) && !stop.stop_requested()) {
        const Numbered next = *std::exchange(waiting_, std::nullopt);
        held.unlock();
        // Qt calls nothing for an object that is gone, and the object outlives this thread.
        QMetaObject::invokeMethod(
            this,
            [this, number = next.number, made = makeBackdrop(next.order)]() mutable { take(number, std::move(made)); },
            Qt::QueuedConnection);
        held.lock();
    }
}

void Backdrop::take(std::uint64_t number, Result<BackdropPictures> made) {
    if (number != last_) return;
    if (!made) {
        emit failed(QString::fromStdString(made.error()));
        return;
    }
    pictures_ = std::move(made).value();
    emit changed();
}

} // namespace lumora
