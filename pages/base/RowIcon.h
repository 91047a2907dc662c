#pragma once

#include "platform/foundation/NSBundle.h"
#include "platform/preferences/PSSpecifier.h"

#include <string>

namespace lumora {

/// Gives a row an icon from a bundle's resources, for both the builder's operation and the settings bundle's own. A name
/// without an extension is a "png". The name keeps its folders, and no resource has any. What is not there is stored as
/// no image. Main thread.
void setIcon(platform::PSSpecifier& row, const std::string& iconName, const platform::NSBundle& bundle);

} // namespace lumora
