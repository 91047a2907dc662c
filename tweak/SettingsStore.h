#pragma once

#include "platform/foundation/Value.h"
#include "tweak/SettingsFile.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <utility>

namespace lumora {

/// How large the settings may become, in bytes as they are written. Each change writes all of them, and its sender
/// waits for a second at most. Settings that are already larger may shrink but not grow, except by the few bytes of a
/// switch, a number or a colour.
inline constexpr std::size_t kLargestSettings = 4U << 20U;

/// A change that is kept. What it points to lives as long as the observer is being told.
struct KeptChange {
    std::int64_t revision;
    const std::string& key;
    const platform::Value* before; ///< null if it was not set
    const platform::Value& value;
};

/// Owns every setting of the tweak and keeps what was changed on disk, as a binary property list.
///
///     auto store = SettingsStore::open(devicePath(kSettingsPath), log);
///     if (auto changed = store.value()->change("kSleepTime", 30); !changed) log(changed.error());
///
/// The file holds changed settings only: defaults are in the program, where a later version may improve them. Any
/// thread may call the store.
class SettingsStore {
  public:
    /// Sets a file that holds no settings aside under another name, with a line in the log, and begins with the defaults.
    /// Fails if the file cannot be read or set aside, because going on would overwrite it. Leaves out an entry with a
    /// value that its setting cannot have, with a line in the log.
    [[nodiscard]] static platform::Result<std::unique_ptr<SettingsStore>> open(const std::filesystem::path& path,
                                                                               const Log& log);

    [[nodiscard]] const std::filesystem::path& path() const { return file_->path(); }

    /// Every known setting with its value, then the keys that only plug-ins know.
    [[nodiscard]] platform::Dictionary settings() const;

    /// Those that were changed, without defaults.
    [[nodiscard]] platform::Dictionary changed() const;

    /// Is told of each change once it is kept. It is called while other changes wait, so it makes none itself. Stands
    /// before the first change.
    using Observer = std::function<void(const KeptChange& change)>;
    void setObserver(Observer observer) { observer_ = std::move(observer); }
    /// How many changes there have been, since the start or since countFrom() had counted.
    [[nodiscard]] std::int64_t revision() const;
    /// Counts on from there. Before the first change.
    void countFrom(std::int64_t revision);

    /// Gives a setting a value, on disk before in memory. Fails, and changes nothing, if the value is nil, if the setting
    /// cannot have it, or if it makes the settings larger than kLargestSettings.
    [[nodiscard]] platform::Result<void> change(const std::string& key, const platform::Value& value);

  private:
    SettingsStore(std::unique_ptr<SettingsFile> file, platform::Dictionary changed, std::size_t size);

    std::unique_ptr<SettingsFile> file_;
    std::mutex changing_; ///< held by one change at a time, while it waits for the disk
    std::size_t size_;    ///< of the settings as they are written, in bytes
    Observer observer_;
    mutable std::mutex state_; ///< guards what follows, which changes under both; never held while anything waits
    platform::Dictionary changed_;
    std::int64_t revision_ = 0;
};

/// The path of the settings under the device root.
inline constexpr const char* kSettingsPath = "/var/mobile/Library/Preferences/com.nevo.lumora.plist";

} // namespace lumora
