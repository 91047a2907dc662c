#include "profiles/MakeProfile.h"

#include "profiles/Differences.h"
#include "tweak/Defaults.h"
#include "json/Json.h"

using platform::Dictionary;
using platform::Value;

namespace profiles {
namespace {

bool isByDefault(const std::string& key, const Value& value) {
    const lumora::Setting* setting = lumora::findSetting(key);
    return setting && isSame(key, value, setting->byDefault);
}

/// Why a setting is left out; empty if it is not.
std::string whyNot(const std::string& key, const Value& value, bool isNamed, const Secrets& secrets) {
    if (secrets.isSecret(key)) return "is a passcode";
    if (!isNamed && secrets.mayBeSecret(key, value))
        return "is a text that no page shows, so it may be a secret: name it to have it";
    const auto json = lumora::writeJson(value, lumora::JsonLayout::line);
    if (!json) return "cannot be written: " + json.error();
    constexpr unsigned depth = kMostDepth - 2; // within the file, and within its settings
    const auto read = lumora::readJsonDocument(json.value(), {depth, kMostKeys});
    return read ? "" : "is too deep or too large for a profile";
}

} // namespace

MadeProfile makeProfile(const Dictionary& settings, const Choice& choice, const Secrets& secrets) {
    std::vector<std::string> keys = choice.keys;
    for (const auto& [key, value] : settings)
        if (choice.keys.empty()) keys.push_back(key);

    MadeProfile made;
    Keys seen;
    for (const std::string& key : keys) {
        if (!seen.insert(key).second) continue;
        const Value* value = settings.find(key);
        if (!value) {
            made.missing.push_back(key);
        } else if (!choice.changedOnly || !isByDefault(key, *value)) {
            const std::string why = whyNot(key, *value, !choice.keys.empty(), secrets);
            if (why.empty()) {
                made.profile.settings.set(key, *value);
            } else {
                made.profile.omitted.push_back(key);
                made.remarks.push_back(std::string(key).append(" ").append(why));
            }
        }
    }
    return made;
}

} // namespace profiles
