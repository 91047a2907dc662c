#pragma once

#include "tests/support/KeptEnvironment.h"
#include "tests/support/Process.h"
#include "tests/support/TemporaryFolder.h"

#include <string>
#include <vector>

namespace tests {

/// Fonts of a test's own, and as long as this lives nothing else is installed for this process. The kinds are those of
/// tests/harness/make_fonts.py. The folder goes with the object.
class TestFonts {
  public:
    explicit TestFonts(const std::vector<std::string>& kinds) {
        install(kinds);
        ::setenv("FONTCONFIG_FILE", (folder_.path() / "fonts.conf").c_str(), 1);
    }

    void install(const std::vector<std::string>& kinds) const {
        std::vector<std::string> command{"/usr/bin/python3", LUMORA_SOURCE "/tests/harness/make_fonts.py",
                                         folder_.path()};
        command.insert(command.end(), kinds.begin(), kinds.end());
        const Process maker(std::move(command)); // which is waited for
    }

    /// Where the font files are.
    [[nodiscard]] std::filesystem::path files() const { return folder_.path() / "fonts"; }

  private:
    KeptEnvironment environment_;
    TemporaryFolder folder_{"fonts"};
};

} // namespace tests
