#pragma once

#include "Fuzzer.h"

#include "platform/foundation/FileDescriptor.h"

#include <filesystem>
#include <string>
#include <string_view>
#include <sys/mman.h>
#include <unistd.h>

namespace fuzz {

/// A file that lives in memory and has a name in a folder of its own, for decoders that read files. The folder goes
/// with the object.
///
///     static const InputFile file("Info.plist");
///     file.write({bytes, size});
class InputFile {
  public:
    explicit InputFile(const std::string& name) : file_(::memfd_create(name.c_str(), MFD_CLOEXEC)) {
        std::string made = std::filesystem::temp_directory_path() / "fuzzer-XXXXXX";
        require(file_ && ::mkdtemp(made.data()) != nullptr);
        folder_ = made;
        path_ = folder_ / name;
        std::filesystem::create_directories(path_.parent_path());
        std::filesystem::create_symlink("/proc/self/fd/" + std::to_string(file_.number()), path_);
    }
    InputFile(const InputFile&) = delete;
    InputFile& operator=(const InputFile&) = delete;
    ~InputFile() {
        std::error_code ignored;
        std::filesystem::remove_all(folder_, ignored);
    }

    [[nodiscard]] const std::filesystem::path& folder() const { return folder_; }
    [[nodiscard]] const std::filesystem::path& path() const { return path_; }

    /// The bytes become all that the file holds.
    void write(std::string_view bytes) const {
        require(::ftruncate(file_.number(), 0) == 0);
        require(::pwrite(file_.number(), bytes.data(), bytes.size(), 0) == static_cast<ssize_t>(bytes.size()));
    }

  private:
    platform::FileDescriptor file_;
    std::filesystem::path folder_, path_;
};

} // namespace fuzz
