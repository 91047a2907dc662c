#include "profiles/Inventory.h"

#include "link/PreferenceKeys.h"

#include <algorithm>
#include <array>

using platform::List;
using platform::Value;

namespace profiles {
namespace {

/// A setting that names what can be installed.
struct NamingKey {
    const char* key;
    const char* what;
    Inventory::Has Inventory::*has;
};

constexpr std::array kNamingKeys{
    NamingKey{lumora::kLSDateFontName, "the font", &Inventory::font},
    NamingKey{lumora::kAppsEnabled, "applications", &Inventory::application},
    NamingKey{lumora::kAUAppsDisabled, "applications", &Inventory::application},
    NamingKey{lumora::kAppViewsEnabled, "App Views", &Inventory::appView},
};

List namesIn(const Value& value) {
    return value.list() ? *value.list() : value.text() ? List{value} : List();
}

} // namespace

std::vector<Remark> absentFrom(const Inventory& inventory, const ReadProfile& read) {
    std::vector<Remark> remarks;
    for (const auto& [key, what, has] : kNamingKeys) {
        const Value* value = read.profile.settings.find(key);
        if (!value || !(inventory.*has)) continue;
        std::string absent;
        for (const Value& entry : namesIn(*value)) {
            const std::string name(entry.text() ? *entry.text() : std::string_view());
            if (!(inventory.*has)(name)) absent += (absent.empty() ? "" : ", ") + name;
        }
        const auto line = read.lines.find(key);
        if (!absent.empty())
            remarks.push_back({Remark::Kind::absent, key, line == read.lines.end() ? 0 : line->second,
                               std::string(key) + " names " + what + " not installed here: " + absent});
    }
    return remarks;
}

bool namesApplications(const Profile& profile) {
    return std::ranges::any_of(kNamingKeys, [&](const NamingKey& naming) {
        return naming.has != &Inventory::font && !namesIn(profile.settings[naming.key]).empty();
    });
}

} // namespace profiles
