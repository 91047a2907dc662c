#include "profiles/Shipped.h"

#include "profiles/ReadProfile.h"

#include "platform/foundation/FileContents.h"
#include "platform/foundation/Unicode.h"

#include <algorithm>
#include <system_error>

namespace fs = std::filesystem;

namespace profiles {

fs::path shippedFolder() {
    std::error_code unknown;
    const fs::path program = fs::read_symlink("/proc/self/exe", unknown);
    return (program.parent_path() / LUMORA_PROFILES).lexically_normal();
}

std::vector<ShippedProfile> shippedProfiles(const fs::path& folder) {
    std::vector<ShippedProfile> shipped;
    std::error_code ended;
    for (fs::directory_iterator file(folder, ended); !ended && file != fs::directory_iterator();
         file.increment(ended)) {
        const auto text = platform::stringWithContentsOfFile(file->path());
        if (file->path().extension() != ".json" || !text) continue;
        if (const auto read = readProfile(*text))
            shipped.push_back({file->path().stem(), read.value().profile.name, file->path()});
    }
    std::ranges::sort(shipped, {}, &ShippedProfile::word);
    return shipped;
}

std::optional<ShippedProfile> shippedProfile(std::string_view wordOrName, const fs::path& folder) {
    const std::string wanted = platform::folded(wordOrName);
    for (ShippedProfile& profile : shippedProfiles(folder))
        if (platform::folded(profile.word) == wanted || platform::folded(profile.name) == wanted) return profile;
    return std::nullopt;
}

} // namespace profiles
