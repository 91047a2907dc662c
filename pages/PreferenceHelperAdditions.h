#pragma once

#include "platform/preferences/PSSpecifier.h"

#include <string>

namespace lumora::PreferenceHelperAdditions {

/// Gives a row an icon from the resources of the bundle that holds PreferenceHelper; returns the row, so that it is
/// applied to what a builder operation has just returned. An icon without an extension is a "png"; one that is not
/// there leaves the row without an icon.
///
///     addIcon(make.button("Mail", selector(&Page::openEmail)), "mail")
///
/// The settings bundle's own: in a plug-in the builder comes from the kit, whose folder has no icons. Main thread.
platform::PSSpecifierRef addIcon(const platform::PSSpecifierRef& row, const std::string& iconName);

} // namespace lumora::PreferenceHelperAdditions
