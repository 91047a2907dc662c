#pragma once

#include "platform/ui/CGGeometry.h"

#include <filesystem>
#include <optional>
#include <string>

namespace settings {

/// What the command line asks for; unset where it leaves something open.
struct Options {
    std::optional<std::filesystem::path> root;
    std::optional<std::filesystem::path> bundle;
    std::string page; ///< class of the first page; empty for the bundle's own
    std::optional<std::filesystem::path> grab;
    std::optional<std::filesystem::path> tour;
    std::string search;      ///< what the window looks for at first; empty for nothing
    std::string profile;     ///< the file of one that the window offers at first; empty for none
    bool history = false;    ///< the window shows it at first
    bool lockScreen = false; ///< in the picture, beside the page
    std::optional<std::string> rows;
    std::optional<std::string> indexBehind; ///< print the index, from behind this page; empty for all of it
    double timeout = 30;                    ///< seconds; a plug-in that never answers takes 10 of them at each start
    bool verbose = false;                   ///< what pages log goes to standard error too
    std::optional<bool> dark;
    std::optional<bool> moreContrast;
    std::optional<int> columns;           ///< 1, or 2 where there is room
    std::optional<int> textSize;          ///< in percent
    std::optional<platform::CGSize> size; ///< of the window, in points
    std::string renderer = "auto";        ///< as programs::addRenderer() has it
};

/// The window's size unless another one is asked for or kept, in points.
inline constexpr platform::CGSize kUsualSize{390, 844};

/// How small and how large texts can be, in percent of their usual size.
inline constexpr int kSmallestTexts = 50;
inline constexpr int kLargestTexts = 300;

/// Reads the command line. For --help, --version and wrong use, where nothing is left to do, prints the answer and sets
/// `exitCode`.
[[nodiscard]] Options readOptions(int argc, char** argv, std::optional<int>& exitCode);

} // namespace settings
