#pragma once

#include "settings/app/Options.h"

namespace settings {

/// Opens the window, or takes the pictures that the options ask for, and returns the exit code. Does not return when the
/// user closes the window, which ends the process.
int runApplication(int argc, char** argv, const Options& options);

/// Prints the page that the options ask for as JSON, without a window, and returns the exit code.
int printRows(const Options& options);

} // namespace settings
