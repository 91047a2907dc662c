#include "lockscreen/app/TourScenes.h"

#include "lockscreen/app/Inputs.h"
#include "lockscreen/app/Options.h"

#include <set>
#include <string_view>
#include <utility>

using platform::Dictionary;
using platform::List;
using platform::Result;
using platform::Value;

namespace lumora {
namespace {

std::string textOf(const Value& value) {
    return value.text() ? std::string(*value.text()) : std::string();
}

Result<void> takeGestures(const Value& value, std::vector<Gesture>& gestures) {
    if (!value.list()) return Result<void>::failure("no list of gestures");
    std::string lines;
    for (const Value& line : *value.list())
        lines += textOf(line) + "\n";
    auto read = gesturesIn(lines);
    if (!read) return Result<void>::failure("gestures, " + read.error());
    gestures = std::move(read).value();
    return {};
}

/// Takes a field of the document into the scene.
Result<void> take(const std::string& field, const Value& value, TourScene& scene) {
    const std::string text = textOf(value);
    bool fits = true;
    if (field == "name") {
        scene.name = text;
        fits = !text.empty() && text.find('/') == std::string::npos;
    } else if (field == "settings") {
        fits = value.dictionary() != nullptr;
        for (const auto& [key, setting] : fits ? *value.dictionary() : Dictionary())
            scene.settings.set(key, setting);
    } else if (field == "surface") {
        fits = text.size() == 1 && std::string_view("NAVPO").find(text) != std::string_view::npos;
        if (fits) scene.surface = static_cast<Surface>(text.front());
    } else if (field == "gestures") {
        return takeGestures(value, scene.gestures);
    } else if (field == "wallpaper") {
        scene.wallpaper = text;
        fits = isWallpaper(text);
    } else if (field == "landscape") {
        scene.landscape = value.boolValue();
        fits = value.boolean().has_value();
    } else if (field == "ratio") {
        scene.ratio = value.doubleValue();
        fits = scene.ratio >= 1;
    } else if (field == "textSize") {
        scene.textSize = static_cast<int>(value.integer().value_or(0));
        fits = isTextSize(scene.textSize);
    } else {
        return Result<void>::failure("a scene has no " + field);
    }
    return fits ? Result<void>() : Result<void>::failure("no " + field + " of a scene");
}

} // namespace

Result<std::vector<TourScene>> scenesIn(const Value& document) {
    const auto failure = [](std::string why) { return Result<std::vector<TourScene>>::failure(std::move(why)); };
    const Value all = document["scenes"];
    if (!all.list() || all.list()->empty()) return failure("there are no scenes");
    TourScene plain;
    if (const Value common = document["settings"]; !common.isNil())
        if (const auto taken = take("settings", common, plain); !taken) return failure(taken.error());
    std::vector<TourScene> scenes;
    std::set<std::string> names;
    for (const Value& one : *all.list()) {
        const std::string place = "scene " + std::to_string(scenes.size() + 1) + ": ";
        if (!one.dictionary()) return failure(place + "no object");
        TourScene& scene = scenes.emplace_back(plain);
        for (const auto& [field, value] : *one.dictionary())
            if (const auto taken = take(field, value, scene); !taken) return failure(place + taken.error());
        if (!names.insert(scene.name).second) return failure(place + "its name is that of another");
        if (scene.name.empty()) return failure(place + "it has no name");
    }
    return scenes;
}

} // namespace lumora
