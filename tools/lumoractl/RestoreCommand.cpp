#include "tools/lumoractl/Ending.h"
#include "tools/lumoractl/Past.h"
#include "tools/lumoractl/PastCommands.h"
#include "tools/lumoractl/TweakClient.h"

#include "tweak/Defaults.h"
#include "json/Json.h"

#include <algorithm>

using platform::Dictionary;
using platform::Result;
using platform::Value;

namespace lumora {
namespace {

/// The settings at a place without what is not known of them.
struct Then {
    Dictionary settings;
    std::vector<std::string> untold; ///< passcodes not among them
};

Then settingsThen(const Timeline& timeline, std::size_t place) {
    Then then{timeline.at(place), timeline.untoldAt(place)};
    for (const std::string& key : then.untold)
        then.settings.remove(key);
    std::erase_if(then.untold, isSecure);
    for (const Setting& setting : knownSettings())
        if (setting.secure) then.settings.remove(setting.key);
    return then;
}

void tellUntold(const Then& then) {
    for (const std::string& key : then.untold)
        complain(key + " is left out: its value then was not kept");
}

/// Does something with the settings at a time that a person has written, or says why there are none.
int useSettingsThen(const std::string& time, const std::function<int(const Timeline&, const Then&)>& use) {
    const Result<Landmark> landmark = readLandmark(time);
    if (!landmark) return report(landmark.error(), kWrongUse);
    const auto past = fetchPast();
    if (!past) return report(past.error());
    if (!past.value()) return report(kNoHistory, kNotOffered);
    const Timeline& timeline = past.value()->timeline;
    const Result<std::size_t> place = placeOf(timeline, landmark.value());
    if (!place) return report(place.error());
    const Then then = settingsThen(timeline, place.value());
    return use(timeline, then);
}

} // namespace

int showSettingsAt(const std::string& time) {
    return useSettingsThen(time, [](const Timeline& /*timeline*/, const Then& then) {
        tellUntold(then);
        const Result<std::string> json = writeJson(then.settings);
        return json ? print(json.value() + "\n") : report(json.error());
    });
}

int restoreSettings(const std::string& timeOrRevision, bool dryRun) {
    return useSettingsThen(timeOrRevision, [dryRun](const Timeline& timeline, const Then& then) {
        std::vector<Intent> intents;
        int status = kDone;
        for (const Setting& setting : knownSettings()) {
            if (setting.secure) continue;
            const Value* now = timeline.present().find(setting.key);
            const Value* value = then.settings.find(setting.key);
            if (std::ranges::find(then.untold, setting.key) != then.untold.end())
                status = report(setting.key + " stays as it is: its value then was not kept");
            else if (now && !value)
                status = report(setting.key + " stays as it is: it was not set, and no message takes a setting away");
            else if (value && (!now || !(*now == *value)))
                intents.push_back({setting.key, now ? std::optional(*now) : std::nullopt, *value});
        }
        return std::max(status, carryOut(intents, dryRun));
    });
}

int resetSettings(const std::vector<std::string>& keys, bool all) {
    if (keys.empty() && !all) return report("which ones? Name keys, or say --all", kWrongUse);
    const auto defaults = fetchDefaults();
    if (!defaults) return report(defaults.error());
    if (!defaults.value()) return report(kNoDefaults, kNotOffered);
    const Result<Dictionary> settings = fetchSettings();
    if (!settings) return report(settings.error());
    std::vector<Intent> intents;
    int status = kDone;
    const auto want = [&](const std::string& key, const Value& value) {
        const Value* now = settings.value().find(key);
        if (!now || !(*now == value)) intents.push_back({key, now ? std::optional(*now) : std::nullopt, value});
    };
    if (all)
        for (const auto& [key, value] : *defaults.value())
            if (!isSecure(key)) want(key, value);
    for (const std::string& key : keys) {
        const Value* value = defaults.value()->find(key);
        if (isSecure(key))
            status = report(key + " is a secret, and stays as it is");
        else if (!value)
            status = report("the tweak tells no default of " + key);
        else
            want(key, *value);
    }
    return std::max(status, carryOut(intents, false));
}

} // namespace lumora
