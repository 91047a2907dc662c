#pragma once

#include "platform/foundation/FileDescriptor.h"
#include "platform/foundation/Result.h"
#include "platform/foundation/Value.h"
#include "tweak/Log.h"

#include <chrono>
#include <condition_variable>
#include <filesystem>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>

namespace lumora {

/// The file that holds the settings, and the only writer of that file in the system.
///
///     auto file = SettingsFile::open(path, log);       // fails while another process has it open
///     file.value()->replace(bytes);                    // whole in its place, or untouched
///
/// A replaced file survives the death of the process at once, and that of the machine within a second: a background
/// thread syncs it to the device. Until then the one that was synced before stays beside it, as NAME.synced. Any thread,
/// one call at a time.
class SettingsFile {
  public:
    /// Replacements that follow one another this closely are synced together.
    static constexpr std::chrono::milliseconds kSyncDelay{300};

    /// Makes the folder if it is missing, and holds a lock beside the file for the life of the object. Fails if another
    /// process holds the lock, if the path leads to anything but a regular file, or if the folder cannot be written.
    [[nodiscard]] static platform::Result<std::unique_ptr<SettingsFile>> open(const std::filesystem::path& path,
                                                                              Log log);
    SettingsFile(const SettingsFile&) = delete;
    SettingsFile& operator=(const SettingsFile&) = delete;
    /// Syncs the last replacement.
    ~SettingsFile();

    [[nodiscard]] const std::filesystem::path& path() const { return path_; }

    /// The bytes of the file, or of the one synced before, which then takes its place, where it is missing; a success
    /// without data if there is neither.
    [[nodiscard]] platform::Result<std::optional<platform::Data>> read() const;

    /// The file has been read and is sound: syncs what the process that wrote it could not.
    void settle();

    /// Renames the file to an unused name and returns the new path.
    [[nodiscard]] platform::Result<std::filesystem::path> setAside() const;

    /// Writes a new file and renames it over the old one, which stays if that fails. Only the owner may read the file,
    /// since it holds passcodes.
    [[nodiscard]] platform::Result<void> replace(const platform::Data& bytes);

  private:
    SettingsFile(std::filesystem::path path, platform::FileDescriptor folder, platform::FileDescriptor lock, Log log);
    [[nodiscard]] platform::Result<void> write(const platform::Data& bytes, const std::string& name) const;
    void syncWhenChanged();
    void sync();

    std::filesystem::path path_;
    std::string name_;
    std::string synced_;
    platform::FileDescriptor folder_;
    platform::FileDescriptor lock_;
    Log log_;

    std::mutex state_; ///< guards the two flags, and which files there are
    std::condition_variable changed_;
    bool unsynced_ = false;
    bool closing_ = false;
    std::thread syncing_;
};

} // namespace lumora
