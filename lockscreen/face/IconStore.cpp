#include "lockscreen/face/IconStore.h"

#include <QCoreApplication>
#include <QPointer>

#include <algorithm>
#include <utility>

namespace lumora {

void IconStore::setInstallation(std::shared_ptr<const Installation> installation) {
    const bool same = installation_ && installation &&
                      installation_->installed().applications == installation->installed().applications;
    installation_ = std::move(installation);
    if (same) return;
    kept_.clear();
    emit changed({});
}

void IconStore::setLargest(double pixels) {
    int step = 128;
    while (step < 1024 && step < pixels)
        step *= 2;
    if (step == std::exchange(pixels_, step)) return;
    kept_.clear();
    emit changed({});
}

QImage IconStore::icon(const QString& identifier) {
    if (!installation_ || identifier.isEmpty()) return {};
    if (const auto known = kept_.constFind(identifier); known != kept_.cend()) return known->image;
    const int pixels = pixels_;
    kept_.insert(identifier, {});
    IconOrder order = installation_->icon(
        identifier.toStdString(), pixels, [store = QPointer(this), identifier, pixels](const platform::Data& png) {
            QImage image = QImage::fromData(reinterpret_cast<const uchar*>(png.data()), static_cast<int>(png.size()));
            QMetaObject::invokeMethod(
                qApp,
                [store, identifier, pixels, image = std::move(image)] {
                    if (store) store->take(identifier, pixels, image);
                },
                Qt::QueuedConnection);
        });
    kept_[identifier].order = std::move(order);
    return {};
}

bool IconStore::isComplete() const {
    return std::ranges::none_of(kept_, [](const Kept& kept) { return kept.order != nullptr; });
}

void IconStore::take(const QString& identifier, int pixels, const QImage& image) {
    const auto kept = kept_.find(identifier);
    if (pixels != pixels_ || kept == kept_.end()) return;
    *kept = {image, nullptr};
    emit changed(identifier);
}

} // namespace lumora
