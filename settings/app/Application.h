#pragma once

#include "settings/app/Options.h"

namespace settings {

/// Opens the window, or takes the pictures that the options ask for, and returns the exit code. Does not return when the
/// user closes the window, which ends the process.
int runApplication(int argc, char** argv, const Options& options);

/// Prints the page that the options ask for as JSON, without a window, and returns the exit code.
int printRows(const Options& options);

/// Prints what can be found on all pages, line by line as walkForIndex() tells it, and returns the exit code. No window,
/// and no message to the tweak.
int printIndex(const Options& options);

} // namespace settings
