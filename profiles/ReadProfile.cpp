#include "profiles/ReadProfile.h"

#include "profiles/Entries.h"
#include "tweak/Defaults.h"
#include "json/Json.h"

#include "platform/foundation/Timestamp.h"

#include <algorithm>
#include <array>
#include <utility>

using platform::Dictionary;
using platform::List;
using platform::Result;
using platform::Value;

namespace profiles {
namespace {

using Kind = Remark::Kind;

std::string quoted(std::string_view text) {
    return "\"" + std::string(text) + "\"";
}

std::size_t lineOf(const std::vector<lumora::JsonKey>& keys, std::string_view key) {
    const auto found =
        std::ranges::find_if(keys, [&](const lumora::JsonKey& place) { return place.depth == 1 && place.key == key; });
    return found == keys.end() ? 0 : found->line;
}

/// The lines of the settings' keys: those that stand deeper, behind the key of all settings.
std::map<std::string, std::size_t, std::less<>> settingLines(const std::vector<lumora::JsonKey>& keys) {
    std::map<std::string, std::size_t, std::less<>> lines;
    bool within = false;
    for (const lumora::JsonKey& place : keys) {
        if (place.depth == 1) {
            within = place.key == kSettingsEntry;
        } else if (within) {
            lines.emplace(place.key, place.line);
        }
    }
    return lines;
}

/// Puts a profile together, and remarks on what does not fit into it.
class ProfileReader {
  public:
    ProfileReader(const lumora::JsonDocument& document, const Secrets& secrets)
        : document_(document), root_(*document.value.dictionary()), secrets_(secrets) {
        read_.lines = settingLines(document.keys);
    }

    ReadProfile read() && {
        Profile& profile = read_.profile;
        profile.version = root_[kVersionEntry].integer().value_or(kVersion);
        profile.name = text(kNameEntry);
        profile.by = text(kByEntry);
        profile.made = text(kMadeEntry);
        if (!profile.made.empty() && !platform::dateFromTimestamp(profile.made)) {
            profile.made.clear();
            remark(kMadeEntry, "\"made\" is no time such as 2026-11-20T18:36:00Z");
        }
        if (profile.version > kVersion)
            read_.remarks.push_back(
                {Kind::later, {}, 0, "made by a later version" + (profile.by.empty() ? "" : ": " + profile.by)});
        readOmitted();
        passOverTheRest();
        for (const auto& [key, value] : *root_.find(kSettingsEntry)->dictionary())
            readSetting(key, value);
        return std::move(read_);
    }

  private:
    void remark(std::string_view entry, std::string text) {
        read_.remarks.push_back({Kind::entry, {}, lineOf(document_.keys, entry), std::move(text)});
    }
    void remark(Kind kind, const std::string& key, std::string text) {
        const auto line = read_.lines.find(key);
        read_.remarks.push_back({kind, key, line == read_.lines.end() ? 0 : line->second, std::move(text)});
    }

    std::string text(const char* entry) {
        const Value value = root_[entry];
        if (value.text()) return std::string(*value.text());
        if (root_.contains(entry)) remark(entry, quoted(entry) + " is no text");
        return {};
    }

    void readOmitted() {
        const Value value = root_[kOmittedEntry];
        const auto isText = [](const Value& key) { return key.text() != nullptr; };
        const List* keys = value.list();
        if (keys && std::ranges::all_of(*keys, isText)) {
            for (const Value& key : *keys)
                read_.profile.omitted.emplace_back(*key.text());
        } else if (root_.contains(kOmittedEntry)) {
            remark(kOmittedEntry, "\"omitted\" is no list of keys");
        }
    }

    void passOverTheRest() {
        constexpr std::array known{kVersionEntry, kNameEntry, kMadeEntry, kByEntry, kSettingsEntry, kOmittedEntry};
        for (const auto& [key, value] : root_)
            if (std::ranges::find(known, std::string_view(key)) == known.end())
                remark(key, quoted(key) + " is not known in a profile, and passed over");
    }

    void readSetting(const std::string& key, const Value& value) {
        if (secrets_.isSecret(key)) return remark(Kind::secret, key, key + " is a passcode, and left out");
        if (value.isNil()) return remark(Kind::refused, key, quoted(key) + " cannot be nil");
        const lumora::Setting* setting = lumora::findSetting(key);
        if (!setting && key.find('.') == std::string::npos) { // keys of plug-ins have dots
            read_.aside.set(key, value);
            return remark(Kind::unknown, key, "Lumora has no setting " + quoted(key));
        }
        if (setting) {
            const Result<void> fits = lumora::canHave(*setting, value);
            if (!fits) return remark(Kind::refused, key, key + " " + fits.error());
            if (const std::string beyond = lumora::beyondItsPage(*setting, value); !beyond.empty())
                remark(Kind::beyond, key, beyond + ": beyond that, it is drawn clamped");
        }
        read_.profile.settings.set(key, value);
    }

    const lumora::JsonDocument& document_;
    const Dictionary& root_;
    const Secrets& secrets_;
    ReadProfile read_;
};

} // namespace

bool isProfile(const Value& document) {
    return document.dictionary() && document.dictionary()->contains(kVersionEntry);
}

Result<ReadProfile> readProfile(std::string_view text, const Secrets& secrets) {
    const auto refuse = [](std::string why) { return Result<ReadProfile>::failure(std::move(why)); };
    if (text.size() > kMostBytes) return refuse(kTooLarge);
    const auto document = lumora::readJsonDocument(text, {kMostDepth, kMostKeys});
    if (!document) return refuse(document.error());
    const Value& root = document.value().value;
    if (!isProfile(root) || root[kVersionEntry].integer().value_or(0) < 1)
        return refuse("it is no profile, which has \"lumora\": 1");
    if (!root.dictionary()->contains(kSettingsEntry)) return refuse("it has no \"settings\"");
    if (!root[kSettingsEntry].dictionary())
        return refuse("line " + std::to_string(lineOf(document.value().keys, kSettingsEntry)) +
                      ": \"settings\" is no dictionary");
    return ProfileReader(document.value(), secrets).read();
}

} // namespace profiles
