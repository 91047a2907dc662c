#pragma once

#include "platform/foundation/NSBundle.h"
#include "platform/preferences/PSSpecifier.h"

#include <string>

namespace lumora {

/// Gives a row an icon from a bundle's resources. A name without an extension gets ".png". Resources stand in no
/// folder, so a name with one finds no icon; a missing icon is stored as no image. Main thread.
void setIcon(platform::PSSpecifier& row, const std::string& iconName, const platform::NSBundle& bundle);

} // namespace lumora
