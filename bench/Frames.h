#pragma once

#include <QEventLoop>
#include <QQuickWindow>
#include <QTimer>

namespace bench {

/// Runs events until the window has drawn something new; false if that takes longer than so many milliseconds.
inline bool nextFrame(QQuickWindow& window, int patience) {
    QEventLoop loop;
    bool came = false;
    const auto swapped = QObject::connect(&window, &QQuickWindow::frameSwapped, &loop, [&] {
        came = true;
        loop.quit();
    });
    QTimer::singleShot(patience, &loop, &QEventLoop::quit);
    loop.exec();
    QObject::disconnect(swapped);
    return came;
}

} // namespace bench
