#pragma once

#include <cstdlib>
#include <filesystem>
#include <optional>
#include <stdexcept>
#include <string>

namespace tests {

/// A ports folder of its own for one test: fresh, private, in the environment, and gone when the test ends.
class PortsFolder {
  public:
    PortsFolder() {
        std::string made = std::filesystem::temp_directory_path() / "ports-XXXXXX";
        if (::mkdtemp(made.data()) == nullptr) throw std::runtime_error("no ports folder");
        path_ = made;
        if (const char* former = std::getenv(kVariable)) former_ = former;
        ::setenv(kVariable, path_.c_str(), 1);
    }
    ~PortsFolder() {
        if (former_) {
            ::setenv(kVariable, former_->c_str(), 1);
        } else {
            ::unsetenv(kVariable);
        }
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    PortsFolder(const PortsFolder&) = delete;
    PortsFolder& operator=(const PortsFolder&) = delete;

    [[nodiscard]] const std::filesystem::path& path() const { return path_; }
    /// Where the socket of a port is.
    [[nodiscard]] std::filesystem::path socket(const std::string& port) const { return path_ / port; }

  private:
    static constexpr const char* kVariable = "LUMORA_PORTS";
    std::filesystem::path path_;
    std::optional<std::string> former_;
};

} // namespace tests
