#pragma once

#include "platform/foundation/DeviceRoot.h"
#include "tests/support/TemporaryFolder.h"

#include <cstdlib>
#include <fstream>
#include <string>

namespace tests {

/// An empty device root of its own, gone with this object; there is none then. With it a cache of its own, since what
/// is found out about a root's plug-ins is kept in the user's.
class DeviceFolder {
  public:
    DeviceFolder() {
        platform::setDeviceRoot(path());
        if (const char* before = std::getenv("XDG_CACHE_HOME")) cacheBefore_ = before;
        ::setenv("XDG_CACHE_HOME", cache().c_str(), 1);
    }
    ~DeviceFolder() {
        platform::setDeviceRoot({});
        // This one alone: what else a test sets may be for all tests of its process.
        ::setenv("XDG_CACHE_HOME", cacheBefore_.c_str(), 1); // an empty one counts as none
    }
    DeviceFolder(const DeviceFolder&) = delete;
    DeviceFolder& operator=(const DeviceFolder&) = delete;

    [[nodiscard]] const std::filesystem::path& path() const { return folder_.path(); }
    [[nodiscard]] std::filesystem::path cache() const { return path() / "cache"; }

    /// Puts a copy of a file at a fixed path.
    void install(const std::filesystem::path& file, const std::filesystem::path& fixedPath) const {
        const std::filesystem::path place = at(fixedPath);
        std::filesystem::copy_file(file, place, std::filesystem::copy_options::overwrite_existing);
    }
    void write(const std::string& text, const std::filesystem::path& fixedPath) const {
        std::ofstream(at(fixedPath), std::ios::binary) << text;
    }

  private:
    [[nodiscard]] std::filesystem::path at(const std::filesystem::path& fixedPath) const {
        std::filesystem::path place = path() / fixedPath.relative_path();
        std::filesystem::create_directories(place.parent_path());
        return place;
    }

    TemporaryFolder folder_{"device"};
    std::string cacheBefore_; ///< empty for the usual one
};

} // namespace tests
