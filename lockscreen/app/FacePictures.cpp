#include "lockscreen/app/FacePictures.h"

#include "lockscreen/app/Studio.h"

#include "programs/SavePicture.h"
#include "tools/lumoractl/TweakClient.h"

#include <QGuiApplication>

#include <array>
#include <utility>

using platform::Result;

namespace lumora {
namespace {

Result<void> save(const Result<Taken>& taken, const std::filesystem::path& file) {
    if (!taken) return Result<void>::failure(taken.error());
    const QImage& picture = taken.value().picture;
    if (picture.isNull() || !programs::savePicture(picture, file))
        return Result<void>::failure("cannot write the picture " + file.string());
    return {};
}

Result<platform::Dictionary> settingsOf(const Inputs& inputs) {
    return inputs.settings ? Result<platform::Dictionary>(*inputs.settings) : fetchSettings();
}

void turn(platform::CGSize& screen, bool landscape) {
    if (landscape != (screen.width > screen.height)) std::swap(screen.width, screen.height);
}

Result<void> takeScenes(const Options& asked, const Inputs& inputs, const std::filesystem::path& folder) {
    Studio studio;
    for (const TourScene& scene : inputs.scenes) {
        if (scene.ratio != qGuiApp->devicePixelRatio()) continue;
        Options options = asked;
        turn(options.phone.size, scene.landscape);
        options.wallpaper = scene.wallpaper;
        options.surface = scene.surface;
        options.textSize = scene.textSize;
        const auto picture = studio.take(options, {{}, scene.gestures, {}}, scene.settings);
        if (auto saved = save(picture, folder / (scene.name + ".png")); !saved)
            return Result<void>::failure("scene " + scene.name + ": " + saved.error());
    }
    return {};
}

Result<void> takeSurfaces(const Options& asked, const Inputs& inputs, const std::filesystem::path& folder) {
    const auto settings = settingsOf(inputs);
    if (!settings) return Result<void>::failure(settings.error());
    constexpr std::array surfaces{std::pair(Surface::notices, "notices"), std::pair(Surface::apps, "apps"),
                                  std::pair(Surface::appView, "view"), std::pair(Surface::passcode, "passcode"),
                                  std::pair(Surface::opened, "opened")};
    Studio studio;
    for (const char* shape : {"", "-landscape"}) {
        for (const char* wallpaper : {"dusk", "day", "night"}) {
            for (const auto& [surface, name] : surfaces) {
                Options options = asked;
                turn(options.phone.size, *shape != '\0');
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

} // namespace

Result<void> grabFace(const Options& options, const Inputs& inputs, const std::filesystem::path& file) {
    const auto settings = settingsOf(inputs);
    if (!settings) return Result<void>::failure(settings.error());
    return save(Studio().take(options, inputs, settings.value()), file);
}

Result<void> tourFace(const Options& options, const Inputs& inputs, const std::filesystem::path& folder) {
    std::error_code failed;
    std::filesystem::create_directories(folder, failed);
    if (failed) return Result<void>::failure("cannot make " + folder.string() + ": " + failed.message());
    return (inputs.scenes.empty() ? takeSurfaces : takeScenes)(options, inputs, folder);
}

} // namespace lumora
