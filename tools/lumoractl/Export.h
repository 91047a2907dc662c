#pragma once

#include "tools/lumoractl/AddCommand.h"

namespace lumora {

/// The command that writes settings of the tweak as a profile.
void addExport(const AddCommand& add);

} // namespace lumora
