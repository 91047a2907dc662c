#pragma once

#include <QEventLoop>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QSize>
#include <QTimer>
#include <QUrl>
#include <QVariantMap>

#include <ctime>
#include <memory>
#include <stdexcept>

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

/// A window with one item, made of QML that begins with these properties and as large as the window.
class ItemWindow {
  public:
    ItemWindow() { engine_.addImportPath(QStringLiteral("qrc:/qt/qml")); }
    void show(const QUrl& file, const QVariantMap& properties, const QSize& size) {
        QQmlComponent component(&engine_, file);
        show(component, properties, size);
    }
    void show(const QByteArray& text, const QVariantMap& properties, const QSize& size) {
        QQmlComponent component(&engine_);
        component.setData(text, {});
        show(component, properties, size);
    }
    [[nodiscard]] QQuickItem& item() { return *item_; }
    [[nodiscard]] QQuickWindow& window() { return window_; }
    /// Sleeps until there is one.
    bool nextFrame(int patience) { return bench::nextFrame(window_, patience); }
    /// Until no frame has come for so many milliseconds.
    void settle(int milliseconds = 50) {
        while (nextFrame(milliseconds)) {
        }
    }

  private:
    void show(QQmlComponent& component, QVariantMap properties, const QSize& size) {
        properties.insert({{QStringLiteral("width"), size.width()}, {QStringLiteral("height"), size.height()}});
        item_.reset(qobject_cast<QQuickItem*>(component.createWithInitialProperties(properties)));
        if (!item_) throw std::runtime_error(component.errorString().toStdString());
        window_.resize(size);
        item_->setParentItem(window_.contentItem());
        window_.show();
    }

    QQmlEngine engine_;
    QQuickWindow window_;
    std::unique_ptr<QQuickItem> item_;
};

} // namespace bench
