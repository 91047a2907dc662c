#pragma once

#include <QEventLoop>
#include <QQuickWindow>
#include <QTimer>

#include <ctime>

namespace bench {

/// Of this thread, in seconds.
inline double processorTime() {
    timespec time{};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
}

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
