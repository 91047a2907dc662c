#pragma once

#include "settings/app/Options.h"

namespace settings {

/// Opens the window, or takes the pictures that the options ask for; the exit code. Does not return when the user
/// closes the window: the process ends there.
int runApplication(int argc, char** argv, const Options& options);

/// Says on standard error why the program fails; the exit code.
int complain(const std::string& why);

/// Prints the page as JSON, without any window; the exit code.
int printRows(const Options& options);

} // namespace settings
