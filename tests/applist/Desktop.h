#pragma once

#include <cstdint>
#include <filesystem>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace tests {

/// A desktop of the test program's own, set up before GLib first looks: nothing that is installed on the machine shows.
/// Its language is German, its icon theme "desktop-theme".
struct Desktop {
    static const std::filesystem::path& folder();
    static std::filesystem::path userData() { return folder() / "user-data"; }
    static std::filesystem::path systemData() { return folder() / "system-data"; }
    static std::filesystem::path config() { return folder() / "config"; }
};

void write(const std::filesystem::path& file, const std::string& contents);

/// A desktop entry of an application whose program is there, with further lines.
[[nodiscard]] std::string entryNamed(const std::string& name, const std::string& more = {});

/// A drawing in one colour, such as "#ff0000".
[[nodiscard]] std::string svg(int width, int height, const std::string& colour);
/// Points in one colour, in the form of a PNG file; transparent when alpha is 0.
[[nodiscard]] std::string png(int width, int height, std::uint32_t redGreenBlueAlpha);

/// Decoded again: rows of points.
struct Points {
    int width = 0;
    int height = 0;
    std::vector<std::uint32_t> redGreenBlueAlpha;
    [[nodiscard]] std::uint32_t at(int x, int y) const {
        return redGreenBlueAlpha.at(static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
                                    static_cast<std::size_t>(x));
    }
};
[[nodiscard]] Points decoded(const std::vector<std::uint8_t>& png);

/// A folder for each test, gone when it ends.
struct FolderTest : testing::Test {
    FolderTest();
    ~FolderTest() override;
    FolderTest(const FolderTest&) = delete;
    FolderTest& operator=(const FolderTest&) = delete;
    std::filesystem::path folder;
};

} // namespace tests
