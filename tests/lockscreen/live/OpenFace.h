#pragma once

#include "lockscreen/face/LiveFace.h"
#include "tests/support/Waiting.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QGuiApplication>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQmlPropertyMap>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTimer>
#include <QtQml/qqmlextensionplugin.h>

#include <chrono>
#include <memory>
#include <stdexcept>

Q_IMPORT_QML_PLUGIN(LumoraFacePlugin)

namespace tests {

/// Handles events until the condition holds; false when it still does not after a generous while.
template<class Condition>
bool comes(Condition holds) {
    const auto end = std::chrono::steady_clock::now() + kLongEnough;
    while (!holds()) {
        if (std::chrono::steady_clock::now() > end) return false;
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    }
    return true;
}

/// A lock screen in a window of its own, which moves as in the program, and the number of frames that it has drawn. It
/// stays awake, at a time that stands still, and has patience with plug-ins that draw.
class OpenFace {
  public:
    OpenFace()
        : live_({.phone = phone(),
                 .ratio = qGuiApp->devicePixelRatio(),
                 .drawing = {.clock = std::chrono::seconds(30)}}) {
        if (const auto made = live_.makeBackdrop(); !made) throw std::runtime_error(made.error());
        model().setFallsAsleep(false);
        engine_.addImportPath(QStringLiteral("qrc:/qt/qml"));
        QQmlComponent component(&engine_, QUrl(QStringLiteral("qrc:/qt/qml/LumoraFace/Face.qml")));
        const QSize size(390, 844);
        face_.reset(component.createWithInitialProperties({{QStringLiteral("face"), QVariant::fromValue(&model())},
                                                           {QStringLiteral("width"), size.width()},
                                                           {QStringLiteral("height"), size.height()}}));
        auto* item = qobject_cast<QQuickItem*>(face_.get());
        if (!item) throw std::runtime_error(component.errorString().toStdString());
        window_.resize(size);
        item->setParentItem(window_.contentItem());
        QObject::connect(&window_, &QQuickWindow::frameSwapped, &window_, [this] { ++frames_; });
        window_.show();
    }

    [[nodiscard]] lumora::LiveFace& live() { return live_; }
    [[nodiscard]] lumora::FaceModel& model() { return *live_.model(); }
    [[nodiscard]] QObject& face() { return *face_; }
    [[nodiscard]] QImage picture() { return window_.grabWindow(); }
    [[nodiscard]] int frames() const { return frames_; }
    /// What the present settings have it show.
    [[nodiscard]] std::string subtitle() {
        return model().looks().value<QObject*>()->property("subtitle").toMap()["text"].toString().toStdString();
    }

  private:
    static lumora::PhoneOptions phone() {
        lumora::PhoneOptions phone;
        phone.time = lumora::timeFrom("2026-11-20T18:36");
        return phone;
    }

    lumora::LiveFace live_;
    QQmlEngine engine_;
    QQuickWindow window_;
    std::unique_ptr<QObject> face_;
    int frames_ = 0;
};

} // namespace tests
