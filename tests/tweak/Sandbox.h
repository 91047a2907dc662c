#pragma once

#include "platform/foundation/Value.h"
#include "tests/support/KeptEnvironment.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <string>

namespace tests {

inline std::string readFile(const std::filesystem::path& file) {
    std::ostringstream contents;
    contents << std::ifstream(file, std::ios::binary).rdbuf();
    return contents.str();
}

inline void writeFile(const std::filesystem::path& file, const std::string& contents) {
    std::ofstream(file, std::ios::binary) << contents;
}

inline platform::Data bytesOf(const std::string& text) {
    return {text.begin(), text.end()};
}

/// A folder for one test, gone when the test ends. Ports that the test and its programs open are in it as well.
class Sandbox {
  public:
    Sandbox() {
        std::string name = std::filesystem::temp_directory_path() / "lumora-test-XXXXXX";
        if (!mkdtemp(name.data())) throw std::runtime_error("no folder for the test");
        path_ = name;
        setenv("LUMORA_PORTS", ports().c_str(), 1);
        unsetenv("LUMORA_ROOT");
    }
    Sandbox(const Sandbox&) = delete;
    Sandbox& operator=(const Sandbox&) = delete;
    ~Sandbox() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }

    [[nodiscard]] const std::filesystem::path& path() const { return path_; }
    [[nodiscard]] std::filesystem::path ports() const { return path_ / "ports"; }
    [[nodiscard]] std::filesystem::path settings() const { return path_ / "settings.plist"; }

  private:
    KeptEnvironment environment_;
    std::filesystem::path path_;
};

} // namespace tests
