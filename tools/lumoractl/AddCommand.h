#pragma once

#include "tools/lumoractl/Ending.h"

#include <CLI/CLI.hpp>

#include <functional>
#include <string>

namespace lumora {

/// Adds a command to lumoractl, with one line of help. `run` is called if it is the chosen one, and gives the exit status.
using AddCommand = std::function<CLI::App*(const std::string& name, const std::string& help, std::function<int()> run)>;

} // namespace lumora
