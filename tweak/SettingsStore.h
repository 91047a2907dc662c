#pragma once

#include "platform/foundation/Value.h"
#include "tweak/SettingsFile.h"

#include <cstddef>
#include <filesystem>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

namespace lumora {

/// How large the settings may become, in bytes as they are written. Each change writes all of them, and whoever sent it
/// waits for that no longer than a second. A file that is larger already keeps its size and a little more, so that its
/// switches can still be changed.
inline constexpr std::size_t kLargestSettings = 4U << 20U;

/// Owns every setting of the tweak and keeps what was changed on disk, as a binary property list.
///
///     auto store = SettingsStore::open(devicePath(kSettingsPath), log);
///     if (auto refusal = store.value()->change("kSleepTime", 30)) log(*refusal);
///
/// Only changed settings are stored: a default stands in the program, where a later version may better it. Any thread.
class SettingsStore {
  public:
    /// A file that holds no settings is set aside under another name, with a line in the log, and defaults stand in.
    /// Fails when that cannot be done, or when the file cannot be read at all, because going on would overwrite it. An
    /// entry that its setting cannot have is told in the log and left out.
    [[nodiscard]] static platform::Result<std::unique_ptr<SettingsStore>> open(const std::filesystem::path& path,
                                                                               const Log& log);

    [[nodiscard]] const std::filesystem::path& path() const { return file_->path(); }

    /// Every known setting with its value, then the keys that only plug-ins know.
    [[nodiscard]] platform::Dictionary settings() const;

    /// Gives a setting a value, on disk before in memory. Returns, in one line, why the change is refused; then it
    /// changes nothing. One that makes the settings larger than kLargestSettings is refused.
    [[nodiscard]] std::optional<std::string> change(const std::string& key, const platform::Value& value);

  private:
    SettingsStore(std::unique_ptr<SettingsFile> file, platform::Dictionary changed, std::size_t largest);

    std::unique_ptr<SettingsFile> file_;
    std::size_t largest_;         ///< that the settings may become, in bytes
    mutable std::mutex changing_; ///< guards what follows, and one change at a time holds it
    platform::Dictionary changed_;
};

/// Where the settings stand under the device root.
inline constexpr const char* kSettingsPath = "/var/mobile/Library/Preferences/com.nevo.lumora.plist";

} // namespace lumora
