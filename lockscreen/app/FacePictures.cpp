#include "lockscreen/app/FacePictures.h"

#include "lockscreen/app/EventLog.h"
#include "lockscreen/app/Playing.h"
#include "lockscreen/face/LiveFace.h"

#include "programs/SavePicture.h"
#include "tools/lumoractl/TweakClient.h"

#include <QEventLoop>
#include <QGuiApplication>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>

#include <array>
#include <chrono>
#include <memory>
#include <utility>

using platform::Result;

namespace lumora {
namespace {

constexpr std::chrono::seconds kPatience(60); // for icons

/// The screen alone, in a window that is as large as it, at a time that stands still.
class Studio {
  public:
    Studio() : installation_(Installation::readNow()) { engine_.addImportPath(QStringLiteral("qrc:/qt/qml")); }

    Result<QImage> take(const Options& options, const Inputs& inputs, const platform::Dictionary& settings) {
        if (auto phone = Phone::with(options.phone, installation_->installed()); !phone)
            return Result<QImage>::failure(phone.error());
        Seconds now = 0;
        LiveFace live({options.phone, options.wallpaper, qGuiApp->devicePixelRatio(), eventLog(options.log),
                       [&now] { return now; }});
        live.take(installation_);
        if (auto made = live.makeBackdrop(); !made) return Result<QImage>::failure(made.error());
        live.model()->setSettings(settings, {});
        auto played = Result<Seconds>::failure({});
        live.model()->drive([&](Behaviour& behaviour) { played = play(behaviour, options, inputs); });
        if (!played) return Result<QImage>::failure(played.error());
        now = played.value();

        QQuickWindow window;
        const platform::CGSize& size = options.phone.size;
        window.resize(static_cast<int>(size.width), static_cast<int>(size.height));
        QQmlComponent component(&engine_, QUrl(QStringLiteral("qrc:/qt/qml/LumoraFace/Face.qml")));
        if (!component.isReady())
            return Result<QImage>::failure("the screen's own files cannot be loaded: " +
                                           component.errorString().toStdString());
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
            if (std::chrono::steady_clock::now() > end)
                return Result<QImage>::failure("timed out waiting for the icons");
        } while (!live.icons().isComplete());
        QCoreApplication::processEvents();
        return window.grabWindow();
    }

  private:
    std::shared_ptr<const Installation> installation_;
    QQmlEngine engine_;
};

Result<void> save(const Result<QImage>& picture, const std::filesystem::path& file) {
    if (!picture) return Result<void>::failure(picture.error());
    if (picture.value().isNull() || !programs::savePicture(picture.value(), file))
        return Result<void>::failure("cannot write the picture " + file.string());
    return {};
}

Result<platform::Dictionary> settingsOf(const Inputs& inputs) {
    return inputs.settings ? Result<platform::Dictionary>(*inputs.settings) : fetchSettings();
}

} // namespace

Result<void> grabFace(const Options& options, const Inputs& inputs, const std::filesystem::path& file) {
    const auto settings = settingsOf(inputs);
    if (!settings) return Result<void>::failure(settings.error());
    return save(Studio().take(options, inputs, settings.value()), file);
}

Result<void> tourFace(const Options& asked, const Inputs& inputs, const std::filesystem::path& folder) {
    const auto settings = settingsOf(inputs);
    if (!settings) return Result<void>::failure(settings.error());
    std::error_code failed;
    std::filesystem::create_directories(folder, failed);
    if (failed) return Result<void>::failure("cannot make " + folder.string() + ": " + failed.message());
    constexpr std::array surfaces{std::pair(Surface::notices, "notices"), std::pair(Surface::apps, "apps"),
                                  std::pair(Surface::appView, "view"), std::pair(Surface::passcode, "passcode"),
                                  std::pair(Surface::opened, "opened")};
    Studio studio;
    for (const char* shape : {"", "-landscape"}) {
        for (const char* wallpaper : {"dusk", "day", "night"}) {
            for (const auto& [surface, name] : surfaces) {
                Options options = asked;
                auto& [width, height] = options.phone.size;
                if ((*shape != '\0') != (width > height)) std::swap(width, height);
                options.wallpaper = wallpaper;
                options.surface = surface;
                const auto picture = studio.take(options, inputs, settings.value());
                if (!picture && surface != Surface::notices && surface != Surface::passcode) continue; // no such stage
                if (auto saved = save(picture, folder / (std::string(name) + shape + "-" + wallpaper + ".png")); !saved)
                    return saved;
            }
        }
    }
    return {};
}

} // namespace lumora
