#pragma once

#include "tools/lumoractl/AddCommand.h"

namespace lumora {

/// The command that compares a profile with the settings of the tweak, or with another one.
void addDiff(const AddCommand& add);

} // namespace lumora
