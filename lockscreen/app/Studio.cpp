#include "lockscreen/app/Studio.h"

#include "lockscreen/LookOf.h"
#include "lockscreen/app/EventLog.h"
#include "lockscreen/app/Playing.h"
#include "lockscreen/face/LiveFace.h"
#include "programs/Display.h"

#include <QEventLoop>
#include <QGuiApplication>
#include <QQmlComponent>
#include <QQuickItem>
#include <QQuickWindow>

#include <chrono>
#include <utility>

using platform::Result;

namespace lumora {
namespace {

constexpr std::chrono::seconds kPatience(60); // for icons and App Views

} // namespace

Studio::Studio() : installation_(Installation::readNow()) {
    engine_.addImportPath(QStringLiteral("qrc:/qt/qml"));
}

Result<Taken> Studio::take(const Options& options, const Inputs& inputs, const platform::Dictionary& settings) {
    const auto failure = [](std::string why) { return Result<Taken>::failure(std::move(why)); };
    Seconds now = 0;
    LiveFace live({options.phone, options.wallpaper, qGuiApp->devicePixelRatio(), eventLog(options.log),
                   [&now] { return now; }, options.textSize.value_or(100) / 100.0});
    live.take(installation_);
    if (auto made = live.makeBackdrop(); !made) return failure(made.error());
    live.model()->setSettings(settings, {});
    auto played = Result<Seconds>::failure({});
    live.model()->drive([&](Behaviour& behaviour) { played = play(behaviour, options, inputs); });
    if (!played) return failure(played.error());
    now = played.value();

    QQuickWindow window;
    programs::failWithoutRenderer(window);
    const platform::CGSize& size = options.phone.size;
    window.resize(static_cast<int>(size.width), static_cast<int>(size.height));
    QQmlComponent component(&engine_, QUrl(QStringLiteral("qrc:/qt/qml/LumoraFace/Face.qml")));
    if (!component.isReady())
        return failure("the screen's own files cannot be loaded: " + component.errorString().toStdString());
    const std::unique_ptr<QObject> face(
        component.createWithInitialProperties({{QStringLiteral("face"), QVariant::fromValue(live.model())},
                                               {QStringLiteral("animated"), false},
                                               {QStringLiteral("width"), size.width},
                                               {QStringLiteral("height"), size.height}}));
    auto* item = qobject_cast<QQuickItem*>(face.get());
    item->setParentItem(window.contentItem());
    window.show();
    const auto end = std::chrono::steady_clock::now() + kPatience;
    do {
        window.grabWindow(); // has every icon in view ask for its picture
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
        if (std::chrono::steady_clock::now() > end) return failure("timed out waiting for the icons and App Views");
    } while (!live.icons().isComplete() || !live.views().isComplete());
    QCoreApplication::processEvents();
    const Behaviour& behaviour = live.model()->behaviour();
    return Taken{window.grabWindow(), lookOf(behaviour.settings(), behaviour.device(), behaviour.state())};
}

} // namespace lumora
