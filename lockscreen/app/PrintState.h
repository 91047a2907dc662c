#pragma once

#include "lockscreen/app/Inputs.h"
#include "lockscreen/app/Options.h"

namespace lumora {

/// Prints what the screen shows and the state that it is in as one JSON object, and returns the exit code. Without
/// settings of a file, asks the tweak once.
int printState(int argc, char** argv, const Options& options, const Inputs& inputs);

} // namespace lumora
