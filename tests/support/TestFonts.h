#pragma once

#include "tests/support/KeptEnvironment.h"
#include "tests/support/Process.h"

#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

namespace tests {

/// Fonts of a test's own, and as long as this lives nothing else is installed for this process. The kinds are those of
/// tests/harness/make_fonts.py. The folder goes with the object.
class TestFonts {
  public:
    explicit TestFonts(const std::vector<std::string>& kinds) {
        std::string made = std::filesystem::temp_directory_path() / "fonts-XXXXXX";
        if (::mkdtemp(made.data()) == nullptr) throw std::runtime_error("no folder for fonts");
        path_ = made;
        install(kinds);
        ::setenv("FONTCONFIG_FILE", (path_ / "fonts.conf").c_str(), 1);
    }
    ~TestFonts() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    TestFonts(const TestFonts&) = delete;
    TestFonts& operator=(const TestFonts&) = delete;

    void install(const std::vector<std::string>& kinds) const {
        std::vector<std::string> command{"/usr/bin/python3", LUMORA_SOURCE "/tests/harness/make_fonts.py", path_};
        command.insert(command.end(), kinds.begin(), kinds.end());
        const Process maker(std::move(command)); // which is waited for
    }

    /// Where the font files are.
    [[nodiscard]] std::filesystem::path files() const { return path_ / "fonts"; }

  private:
    KeptEnvironment environment_;
    std::filesystem::path path_;
};

} // namespace tests
