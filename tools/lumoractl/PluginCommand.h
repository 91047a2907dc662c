#pragma once

#include "tools/lumoractl/AddCommand.h"

namespace lumora {

/// The command for authors of plug-ins: makes one, judges it, shows it.
void addPlugin(const AddCommand& add);

} // namespace lumora
