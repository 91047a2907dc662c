#pragma once

#include "profiles/Profile.h"
#include "profiles/Remark.h"
#include "profiles/Secrets.h"

#include "platform/foundation/Result.h"
#include "platform/foundation/Value.h"

#include <cstddef>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace profiles {

/// A profile as far as it can be taken.
struct ReadProfile {
    Profile profile;            ///< with settings that the tweak takes
    platform::Dictionary aside; ///< settings that are not known here, perhaps a later version's
    std::vector<Remark> remarks;
    std::map<std::string, std::size_t, std::less<>> lines; ///< of the settings' keys
};

/// Whether a JSON document means to be a profile, and no plain dictionary of settings. Any thread, as the next one.
[[nodiscard]] bool isProfile(const platform::Value& document);

/// Reads a file, of which one bad setting spoils none of the others. Fails, in words that repeat no value, for what is no
/// profile: no JSON, no version and settings, larger or deeper than the limits of Profile.h, a key that stands there
/// twice.
[[nodiscard]] platform::Result<ReadProfile> readProfile(std::string_view text, const Secrets& secrets = {});

} // namespace profiles
