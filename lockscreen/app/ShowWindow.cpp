#include "lockscreen/app/ShowWindow.h"

#include "lockscreen/app/EventLog.h"
#include "lockscreen/app/FacePictures.h"
#include "lockscreen/app/Playing.h"
#include "lockscreen/face/LiveFace.h"

#include "platform/services/PictureDecoder.h"
#include "programs/DesktopLook.h"
#include "programs/Display.h"
#include "programs/Program.h"
#include "programs/Sigterm.h"

#include <QFont>
#include <QGuiApplication>
#include <QQmlApplicationEngine>
#include <QQuickWindow>
#include <QScreen>
#include <QtQml/qqmlextensionplugin.h>

#include <algorithm>

Q_IMPORT_QML_PLUGIN(LumoraFacePlugin)

using platform::Result;

namespace lumora {
namespace {

// Around the screen of the phone: its rim, and what FacePane.qml has above and below.
constexpr double kAround = 40;
constexpr double kAbove = 80;

int openWindow(const Options& options, const Inputs& inputs) {
    // None of these is ever destroyed: a tweak may keep the feed waiting.
    auto& live = *new LiveFace({options.phone,
                                options.wallpaper,
                                qGuiApp->devicePixelRatio(),
                                eventLog(options.log),
                                {},
                                options.textSize.value_or(100) / 100.0});
    QObject::connect(&live, &LiveFace::failed, &live,
                     [](const QString& why) { programs::complain(why.toStdString()); });
    const auto begin = [&live, options, inputs] {
        auto played = Result<Seconds>::failure({});
        live.model()->drive([&](Behaviour& behaviour) { played = play(behaviour, options, inputs); });
        if (!played) programs::complain(played.error());
    };
    QObject::connect(&live, &LiveFace::installed, &live, begin, Qt::SingleShotConnection);
    if (inputs.settings)
        live.model()->setSettings(*inputs.settings, {});
    else
        live.follow();
    live.readInstallation();

    auto& engine = *new QQmlApplicationEngine;
    engine.addImportPath(QStringLiteral("qrc:/qt/qml"));
    const platform::CGSize& size = options.phone.size;
    const QSize room = qGuiApp->primaryScreen()->availableSize();
    engine.setInitialProperties({{QStringLiteral("face"), QVariant::fromValue(live.model())},
                                 {QStringLiteral("landscape"), size.width > size.height},
                                 {QStringLiteral("width"), std::min<double>(size.width + kAround, room.width())},
                                 {QStringLiteral("height"), std::min<double>(size.height + kAbove, room.height())}});
    engine.load(QUrl(QStringLiteral("qrc:/qt/qml/LumoraFace/FaceWindow.qml")));
    auto* window = engine.rootObjects().isEmpty() ? nullptr : qobject_cast<QQuickWindow*>(engine.rootObjects().first());
    if (!window) return programs::complain("the window's own files cannot be loaded");
    programs::failWithoutRenderer(*window);
    programs::closeAtSigterm(*window);
    const auto* desktop = new programs::DesktopLook(window);
    QObject::connect(desktop, &programs::DesktopLook::darkChosen, window,
                     [window](bool dark) { window->setProperty("dark", dark); });
    QObject::connect(desktop, &programs::DesktopLook::lessMotionChosen, window,
                     [window](bool less) { window->setProperty("animated", !less); });
    if (!options.textSize)
        QObject::connect(desktop, &programs::DesktopLook::textSizeChosen, &live, [&live](double percent) {
            live.setTextScale(std::clamp<double>(percent, kSmallestTextSize, kLargestTextSize) / 100);
        });
    QObject::connect(window, &QWindow::visibilityChanged, &live, [&live](QWindow::Visibility visibility) {
        live.setVisible(visibility != QWindow::Hidden && visibility != QWindow::Minimized);
    });
    QObject::connect(window, &QWindow::screenChanged, &live,
                     [&live, window] { live.setRatio(window->devicePixelRatio()); });
    return QGuiApplication::exec();
}

} // namespace

int showWindow(int argc, char** argv, const Options& asked, const Inputs& inputs) {
    Options options = asked;
    const bool picturesOnly = programs::savesPicturesOnly(options.grab, options.tour, "lumora-lockscreen-tour");
    programs::prepareDrawing(picturesOnly, options.renderer);
    if (picturesOnly) platform::PicturePatience::makeEndless();
    new QGuiApplication(argc, argv);
    QGuiApplication::setApplicationDisplayName(QStringLiteral("Lumora"));
    QGuiApplication::setDesktopFileName(QStringLiteral("lumora-lockscreen"));
    QGuiApplication::setFont(QFont(QStringLiteral("Inter")));
    if (!picturesOnly) return openWindow(options, inputs);
    const Result<void> saved =
        options.grab ? grabFace(options, inputs, *options.grab) : tourFace(options, inputs, *options.tour);
    return saved ? 0 : programs::complain(saved.error());
}

} // namespace lumora
