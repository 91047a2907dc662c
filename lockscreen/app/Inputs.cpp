#include "lockscreen/app/Inputs.h"

#include "profiles/ReadProfile.h"
#include "tools/lumoractl/Streams.h"
#include "json/Json.h"

#include "platform/foundation/PropertyList.h"

#include <algorithm>
#include <cstddef>
#include <limits>

using platform::Data;
using platform::Dictionary;
using platform::Result;
using platform::Value;

namespace lumora {
namespace {

Result<std::string> textOf(const std::string& file) {
    const Result<Data> bytes = readAll(file);
    if (!bytes) return Result<std::string>::failure(bytes.error());
    return std::string(bytes.value().begin(), bytes.value().end());
}

std::string nameOf(const std::string& file) {
    return file == "-" ? "standard input" : file;
}

Result<Value> readDocument(const std::string& file) {
    const Result<std::string> text = textOf(file);
    if (!text) return Result<Value>::failure(text.error());
    Result<Value> value = readJson(text.value());
    return value ? std::move(value) : Result<Value>::failure(nameOf(file) + " is no JSON: " + value.error());
}

/// Of a profile, those of a tweak that has taken it.
Result<Dictionary> readSettings(const std::string& file, std::vector<std::string>& remarks) {
    const auto fail = [](std::string why) { return Result<Dictionary>::failure(std::move(why)); };
    const Result<std::string> text = textOf(file);
    if (!text) return fail(text.error());
    constexpr JsonLimits none{platform::PropertyListLimits::depth, std::numeric_limits<std::size_t>::max()};
    const auto document = readJsonDocument(text.value(), none);
    if (!document) return fail(nameOf(file) + " is no JSON: " + document.error());
    if (!profiles::isProfile(document.value().value)) {
        const Dictionary* settings = document.value().value.dictionary();
        return settings ? Result<Dictionary>(*settings) : fail(nameOf(file) + " is no object of settings");
    }
    const auto read = profiles::readProfile(text.value());
    if (!read) return fail(nameOf(file) + ": " + read.error());
    for (const std::string& line : linesOf(read.value().remarks))
        remarks.push_back(nameOf(file) + ", " + line);
    return allSettings(read.value().profile);
}

Result<std::vector<TourScene>> readScenes(const std::string& file) {
    const Result<Value> value = readDocument(file);
    if (!value) return Result<std::vector<TourScene>>::failure(value.error());
    auto scenes = scenesIn(value.value());
    return scenes ? std::move(scenes) : Result<std::vector<TourScene>>::failure(nameOf(file) + ", " + scenes.error());
}

Result<std::vector<Gesture>> readGestures(const std::string& file) {
    const Result<std::string> text = textOf(file);
    if (!text) return Result<std::vector<Gesture>>::failure(text.error());
    auto gestures = gesturesIn(text.value());
    return gestures ? std::move(gestures)
                    : Result<std::vector<Gesture>>::failure(nameOf(file) + ", " + gestures.error());
}

} // namespace

Result<std::vector<Gesture>> gesturesIn(std::string_view text) {
    std::vector<Gesture> gestures;
    for (int number = 1; !text.empty(); ++number) {
        const std::string_view line = text.substr(0, text.find('\n'));
        text.remove_prefix(std::min(line.size() + 1, text.size()));
        const std::size_t begin = line.find_first_not_of(" \t\r");
        if (begin == std::string_view::npos || line[begin] == '#') continue;
        Result<Gesture> gesture = Gesture::read(line);
        if (!gesture)
            return Result<std::vector<Gesture>>::failure("line " + std::to_string(number) + ": " + gesture.error());
        gestures.push_back(std::move(gesture).value());
    }
    return gestures;
}

Result<Inputs> readInputs(const Options& options) {
    Inputs inputs;
    if (options.settings) {
        Result<Dictionary> settings = readSettings(*options.settings, inputs.remarks);
        if (!settings) return Result<Inputs>::failure(settings.error());
        inputs.settings = std::move(settings).value();
    }
    if (options.play) {
        auto gestures = readGestures(*options.play);
        if (!gestures) return Result<Inputs>::failure(gestures.error());
        inputs.gestures = std::move(gestures).value();
    }
    if (options.scenes) {
        auto scenes = readScenes(*options.scenes);
        if (!scenes) return Result<Inputs>::failure(scenes.error());
        inputs.scenes = std::move(scenes).value();
    }
    return inputs;
}

} // namespace lumora
