#pragma once

#include "platform/preferences/PSSpecifier.h"

#include <string>

namespace lumora::PreferenceHelperAdditions {

/// Gives a row an icon from the resources of the bundle that holds PreferenceHelper, and returns the row. A name
/// without an extension gets ".png"; a missing icon leaves the row without one.
///
///     addIcon(make.button("Mail", selector(&Page::openEmail)), "mail")
///
/// For the settings bundle only: in a plug-in the builder comes from the kit, whose folder has no icons. Main thread.
platform::PSSpecifierRef addIcon(const platform::PSSpecifierRef& row, const std::string& iconName);

} // namespace lumora::PreferenceHelperAdditions
