#pragma once

#include "lockscreen/Device.h"
#include "lockscreen/Look.h"

#include "platform/foundation/Value.h"

namespace lumora {

/// What the lock screen shows: a function of the tweak's settings, of the phone and of what has been done on it, and of
/// nothing else. All that is decided about the looks is decided here; docs/lockscreen.md says what each key does. Any
/// thread.
[[nodiscard]] Look lookOf(const platform::Dictionary& settings, const Device& device, const State& state);

/// The stages that swipes lead to, with these settings.
[[nodiscard]] std::vector<Surface> stagesOf(const platform::Dictionary& settings, const Device& device);
/// The applications of the icon view, and the App Views, that are both enabled and installed, in the user's order.
[[nodiscard]] std::vector<const Application*> enabledApplications(const platform::Dictionary& settings,
                                                                  const Device& device);
[[nodiscard]] std::vector<const AppViewInfo*> enabledViews(const platform::Dictionary& settings, const Device& device);

} // namespace lumora
