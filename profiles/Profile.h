#pragma once

#include "platform/foundation/Result.h"
#include "platform/foundation/Value.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace profiles {

/// The form that is written. A file of a later one is read as far as it goes.
inline constexpr std::int64_t kVersion = 1;

/// What a file may hold.
inline constexpr std::size_t kMostBytes = std::size_t{1} << 20;
inline constexpr std::size_t kMostKeys = 10'000;
inline constexpr unsigned kMostDepth = 8; ///< of nested lists and dictionaries, the file's own included

/// Settings under a name, to keep or to share. It is data alone, and changes only the keys that it names:
///
///     {"lumora": 1, "name": "Quiet evenings", "made": "2026-11-20T18:36:00Z", "by": "lumora 1.0.0",
///      "settings": {"kAppRoundedEnabled": true}, "omitted": ["kAutoUnlockPasscode"]}
struct Profile {
    std::int64_t version = kVersion;
    std::string name;
    std::string made; ///< a time stamp, as platform::timestamp() gives it
    std::string by;   ///< the program, with its version
    platform::Dictionary settings;
    std::vector<std::string> omitted; ///< keys that have been left out, such as those of passcodes
};

/// All settings of a tweak of which only those of the profile have been changed. Any thread.
[[nodiscard]] platform::Dictionary allSettings(const Profile& profile);

/// The text of a file. Of name, time, program and omitted keys, it has those that are there. Fails for what readProfile()
/// would refuse. Any thread.
[[nodiscard]] platform::Result<std::string> writeProfile(const Profile& profile);

} // namespace profiles
