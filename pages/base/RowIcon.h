#pragma once

#include "platform/foundation/NSBundle.h"
#include "platform/preferences/PSSpecifier.h"

#include <string>

namespace lumora {

/// Gives a row an icon from a bundle's resources. A name without an extension gets ".png". A bundle has no folders of
/// resources, so a name with a folder in it finds no icon; a missing icon is stored as a null image. Main thread.
void setIcon(platform::PSSpecifier& row, const std::string& iconName, const platform::NSBundle& bundle);

} // namespace lumora
