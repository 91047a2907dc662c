#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace profiles {

/// A profile that comes with Lumora.
struct ShippedProfile {
    std::string word; ///< to call it by on a command line, without spaces: the file's name without extension
    std::string name;
    std::filesystem::path file;
};

/// The folder of these profiles, found from the program's own, in the build as in an installation. It may be missing. Any
/// thread, as all of these.
[[nodiscard]] std::filesystem::path shippedFolder();

/// The profiles in a folder that can be read, by their words.
[[nodiscard]] std::vector<ShippedProfile> shippedProfiles(const std::filesystem::path& folder = shippedFolder());

/// The one of that word or name, whatever the case; nothing if there is none.
[[nodiscard]] std::optional<ShippedProfile> shippedProfile(std::string_view wordOrName,
                                                           const std::filesystem::path& folder = shippedFolder());

} // namespace profiles
