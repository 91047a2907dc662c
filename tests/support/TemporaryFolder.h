#pragma once

#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>

namespace tests {

/// An empty folder, gone with this object.
class TemporaryFolder {
  public:
    explicit TemporaryFolder(const std::string& name) {
        std::string made = std::filesystem::temp_directory_path() / (name + "-XXXXXX");
        if (::mkdtemp(made.data()) == nullptr) throw std::runtime_error("no folder " + made);
        path_ = made;
    }
    ~TemporaryFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    [[nodiscard]] const std::filesystem::path& path() const { return path_; }

  private:
    std::filesystem::path path_;
};

} // namespace tests
