#pragma once

#include "lockscreen/app/Inputs.h"
#include "lockscreen/app/Options.h"

namespace lumora {

/// Opens the window, or takes the pictures that the options ask for, and returns the exit code.
int showWindow(int argc, char** argv, const Options& options, const Inputs& inputs);

} // namespace lumora
