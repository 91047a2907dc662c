#pragma once

namespace profiles {

/// What a file of a profile has in it.
inline constexpr const char* kVersionEntry = "lumora";
inline constexpr const char* kNameEntry = "name";
inline constexpr const char* kMadeEntry = "made";
inline constexpr const char* kByEntry = "by";
inline constexpr const char* kSettingsEntry = "settings";
inline constexpr const char* kOmittedEntry = "omitted";

inline constexpr const char* kTooLarge = "it is larger than 1 MB";

} // namespace profiles
