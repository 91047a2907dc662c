#pragma once

#include "platform/foundation/FileDescriptor.h"
#include "platform/foundation/NSBundle.h"

#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <sys/file.h>
#include <typeinfo>

namespace tests {

/// The place of a resource in the bundle of a class that is compiled into the test program: the program's own folder,
/// in which each such program stands alone (RUNTIME_OUTPUT_DIRECTORY). At first nothing is there, and nothing in the
/// end; tests run side by side have it one after the other.
///
///     tests::BundleFile file{typeid(ChangeLog), "changelog.txt"};
///     file.write("1.0");
class BundleFile {
  public:
    BundleFile(const std::type_info& inBundle, const std::string& name) {
        const std::filesystem::path folder = platform::NSBundle::bundleForClass(inBundle)->bundlePath();
        folder_ = platform::FileDescriptor(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
        if (!folder_ || ::flock(folder_.number(), LOCK_EX) != 0)
            throw std::runtime_error("no bundle in " + folder.string());
        path_ = folder / name;
        std::filesystem::remove_all(path_);
    }
    ~BundleFile() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    BundleFile(const BundleFile&) = delete;
    BundleFile& operator=(const BundleFile&) = delete;

    [[nodiscard]] const std::filesystem::path& path() const { return path_; }
    void write(const std::string& text) const {
        if (!(std::ofstream(path_, std::ios::binary) << text).flush())
            throw std::runtime_error("cannot write " + path_.string());
    }

  private:
    std::filesystem::path path_;
    platform::FileDescriptor folder_;
};

} // namespace tests
