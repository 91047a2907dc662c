#include "tools/lumoractl/ProfileFile.h"

#include "tools/lumoractl/RowNames.h"
#include "tools/lumoractl/Streams.h"

#include "lockscreen/phone/Installation.h"
#include "platform/foundation/Timestamp.h"
#include "platform/ui/UIFont.h"
#include "profiles/Inventory.h"
#include "profiles/Shipped.h"

#include <algorithm>
#include <chrono>
#include <memory>
#include <system_error>
#include <utility>

using platform::Data;
using platform::Result;
using profiles::ReadProfile;

namespace lumora {
namespace {

std::string fileOf(const std::string& name) {
    std::error_code unknown;
    const auto there = std::filesystem::status(name, unknown);
    if (name == "-" || name.find('/') != std::string::npos || (exists(there) && !is_directory(there))) return name;
    const auto shipped = profiles::shippedProfile(name);
    return shipped ? shipped->file.string() : name;
}

std::string timeNow() {
    using namespace std::chrono;
    constexpr sys_seconds epoch = sys_days(year(2001) / January / 1); // of dates
    const auto passed = floor<seconds>(system_clock::now()) - epoch;
    return platform::timestamp({static_cast<double>(passed.count())}).value_or("");
}

profiles::Inventory inventoryFor(const profiles::Profile& profile) {
    profiles::Inventory inventory;
    inventory.font = [](const std::string& name) {
        return name.empty() || name == "Default" || platform::UIFont::fontWithName(name, 1) != nullptr;
    };
    if (!namesApplications(profile)) return inventory;
    const std::shared_ptr<const Installation> here = Installation::readNow();
    // Without the library nobody knows what is installed.
    if (!here->installed().applications.empty())
        inventory.application = [here](const std::string& name) {
            return std::ranges::find(here->installed().applications, name, &Application::identifier) !=
                   here->installed().applications.end();
        };
    inventory.appView = [here](const std::string& name) {
        return std::ranges::find(here->installed().views, name, &AppViewInfo::identifier) !=
               here->installed().views.end();
    };
    return inventory;
}

} // namespace

Result<NamedProfile> readNamedProfile(const std::string& name, const std::filesystem::path& root) {
    const auto fail = [](std::string why) { return Result<NamedProfile>::failure(std::move(why)); };
    const Result<Data> bytes = readAll(fileOf(name), profiles::kMostBytes + 1);
    if (!bytes) return fail(bytes.error());
    const std::string text(bytes.value().begin(), bytes.value().end());
    NamedProfile profile{name == "-" ? "standard input" : name, {}};
    Result<ReadProfile> read = profiles::readProfile(text);
    if (read) read = profiles::readProfile(text, secretsFor(read.value().profile.settings, root));
    if (!read) return fail(profile.label + ": " + read.error());
    profile.read = std::move(read).value();
    for (profiles::Remark& remark : absentFrom(inventoryFor(profile.read.profile), profile.read))
        profile.read.remarks.push_back(std::move(remark));
    return profile;
}

Result<std::string> textOf(profiles::Profile profile, const std::string& name) {
    profile.name = name;
    profile.made = timeNow();
    profile.by = "lumora " LUMORA_VERSION;
    return writeProfile(profile);
}

void complainOf(const NamedProfile& profile) {
    for (const std::string& line : linesOf(profile.read.remarks))
        complain(profile.label + ", " + line);
}

bool leavesSomethingOut(const NamedProfile& profile) {
    return std::ranges::any_of(profile.read.remarks,
                               [](const profiles::Remark& remark) { return leavesOut(remark.kind); });
}

} // namespace lumora
