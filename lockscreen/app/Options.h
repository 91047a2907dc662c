#pragma once

#include "lockscreen/Look.h"
#include "lockscreen/phone/Phone.h"

#include <filesystem>
#include <optional>
#include <string>

namespace lumora {

/// What the command line asks for; unset where it leaves something open.
struct Options {
    std::optional<std::filesystem::path> root;
    PhoneOptions phone;
    std::optional<int> textSize;         ///< of texts in App Views, in percent
    std::string wallpaper = "dusk";      ///< one of ours by its name, or a file
    std::optional<Surface> surface;      ///< where to begin
    std::optional<std::string> play;     ///< a file of gestures; "-" for standard input
    double idle = 0;                     ///< seconds without a touch at the end
    std::optional<std::string> settings; ///< a file of JSON, in place of a tweak; "-" for standard input
    bool state = false;                  ///< print it, and end
    std::optional<std::filesystem::path> grab;
    std::optional<std::filesystem::path> tour;
    std::optional<std::string> scenes; ///< a file of them, for the tour
    bool log = false;                  ///< of gestures and outcomes, on standard output
    std::string renderer = "auto";     ///< as programs::addRenderer() has it
};

/// Reads the command line. For --help, --version and wrong use, where nothing is left to do, prints the answer and sets
/// `exitCode`.
[[nodiscard]] Options readOptions(int argc, char** argv, std::optional<int>& exitCode);

/// The names of our own wallpapers.
[[nodiscard]] bool isWallpaper(const std::string& name);

constexpr int kSmallestTextSize = 50;
constexpr int kLargestTextSize = 300;
[[nodiscard]] constexpr bool isTextSize(int percent) {
    return percent >= kSmallestTextSize && percent <= kLargestTextSize;
}

} // namespace lumora
