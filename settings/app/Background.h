#pragma once

#include <QMetaObject>
#include <QObject>

#include <memory>
#include <thread>
#include <utility>

namespace settings {

/// Has work done on a thread of its own, and its result taken on the GUI thread. The context lives until the process ends,
/// which waits for no such work.
void inBackground(QObject& context, auto work, auto take) {
    std::thread([&context, work = std::move(work), take = std::move(take)] {
        auto result = std::make_shared<decltype(work())>(work());
        QMetaObject::invokeMethod(
            &context, [result, take] { take(std::move(*result)); }, Qt::QueuedConnection);
    }).detach();
}

} // namespace settings
