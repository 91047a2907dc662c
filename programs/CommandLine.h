#pragma once

#include <CLI/CLI.hpp>

#include <optional>
#include <string>

namespace programs {

inline constexpr int kWrongUse = 2; ///< an exit code

/// Reads the command line. The exit code for --help, --version and wrong use, which leave nothing to do but what this
/// has printed.
[[nodiscard]] std::optional<int> parse(CLI::App& app, int argc, char** argv);

/// Says what else is wrong with the use, as parse() does, and returns the exit code.
[[nodiscard]] int misuse(const CLI::App& app, const std::string& why);

/// The options that all programs with a window share.
void addVersion(CLI::App& app, const std::string& name);
/// "auto", "software" or "gpu", for prepareDrawing().
void addRenderer(CLI::App& app, std::string& renderer);
template<class Path>
void addRoot(CLI::App& app, Path& root) {
    app.add_option("--root", root, "The folder that stands for the device's \"/\"")->type_name("DIR");
}

} // namespace programs
