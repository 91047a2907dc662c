#pragma once

#include "platform/foundation/Result.h"
#include "profiles/ReadProfile.h"

#include <filesystem>
#include <string>

namespace lumora {

/// A profile that a person has named: a file, "-" for standard input, or where there is no such file one that is
/// shipped, by its word or name.
struct NamedProfile {
    std::string label; ///< what the person has called it
    profiles::ReadProfile read;
};

/// Reads it, and remarks on fonts, applications and App Views as well that are not installed here. An empty root is the
/// program's own.
[[nodiscard]] platform::Result<NamedProfile> readNamedProfile(const std::string& name,
                                                              const std::filesystem::path& root);

/// The text of a profile's file, made now by this program.
[[nodiscard]] platform::Result<std::string> textOf(profiles::Profile profile, const std::string& name);

/// A line on standard error for each remark.
void complainOf(const NamedProfile& profile);

/// Whether a setting of the file is left out.
[[nodiscard]] bool leavesSomethingOut(const NamedProfile& profile);

} // namespace lumora
