#pragma once

#include "tools/lumoractl/AddCommand.h"

namespace lumora {

/// The command that takes a profile into the settings of the tweak, or tells what would come of that.
void addImport(const AddCommand& add);

} // namespace lumora
