#pragma once

#include "platform/foundation/DeviceRoot.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>

namespace tests {

/// An empty device root of its own, gone with this object; there is none then. With it a cache of its own, since what
/// is found out about a root's plug-ins is kept in the user's.
class DeviceFolder {
  public:
    DeviceFolder() {
        std::string made = std::filesystem::temp_directory_path() / "device-XXXXXX";
        if (::mkdtemp(made.data()) == nullptr) throw std::runtime_error("no device root");
        path_ = made;
        platform::setDeviceRoot(path_);
        if (const char* before = std::getenv("XDG_CACHE_HOME")) cacheBefore_ = before;
        ::setenv("XDG_CACHE_HOME", cache().c_str(), 1);
    }
    ~DeviceFolder() {
        platform::setDeviceRoot({});
        ::setenv("XDG_CACHE_HOME", cacheBefore_.c_str(), 1); // an empty one counts as none
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    DeviceFolder(const DeviceFolder&) = delete;
    DeviceFolder& operator=(const DeviceFolder&) = delete;

    [[nodiscard]] const std::filesystem::path& path() const { return path_; }
    [[nodiscard]] std::filesystem::path cache() const { return path_ / "cache"; }

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
        std::filesystem::path place = path_ / fixedPath.relative_path();
        std::filesystem::create_directories(place.parent_path());
        return place;
    }
    std::filesystem::path path_;
    std::string cacheBefore_; ///< empty for the usual one
};

} // namespace tests
