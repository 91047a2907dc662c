#pragma once

#include "settings/model/Shell.h"

namespace settings {

/// Brings the shell what the tweak tells of its defaults: once there is a page, and whenever a tweak comes. Nothing waits
/// for it. GUI thread.
void bringDefaults(Shell& shell);

/// Sends changes one after the other, and waits for each answer; ends with the first that no tweak answers. Any thread.
[[nodiscard]] Sent sendChanges(const std::vector<SettingChange>& changes);

} // namespace settings
