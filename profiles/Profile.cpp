#include "profiles/Profile.h"

#include "profiles/Entries.h"
#include "tweak/Defaults.h"
#include "json/Json.h"

#include <utility>

using platform::Dictionary;
using platform::List;
using platform::Result;

namespace profiles {

Dictionary allSettings(const Profile& profile) {
    return lumora::withDefaults(profile.settings);
}

Result<std::string> writeProfile(const Profile& profile) {
    Dictionary document{{kVersionEntry, profile.version}};
    const std::pair<const char*, const std::string&> texts[] = {
        {kNameEntry, profile.name}, {kMadeEntry, profile.made}, {kByEntry, profile.by}};
    for (const auto& [entry, text] : texts)
        if (!text.empty()) document.set(entry, text);
    document.set(kSettingsEntry, profile.settings);
    if (!profile.omitted.empty()) document.set(kOmittedEntry, List(profile.omitted.begin(), profile.omitted.end()));
    Result<std::string> text = lumora::writeJson(document);
    if (!text) return text;
    std::string written = std::move(text).value() + "\n";
    if (written.size() > kMostBytes) return Result<std::string>::failure(kTooLarge);
    if (const auto read = lumora::readJsonDocument(written, {kMostDepth, kMostKeys}); !read)
        return Result<std::string>::failure(read.error());
    return written;
}

} // namespace profiles
