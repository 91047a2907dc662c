#pragma once

#include "pages/base/SettingsPage.h"

namespace lumora {

/// The Auto-Unlock page: lets the tweak unlock the device when an application is opened from the lock screen.
///
/// Kept on purpose: the two passcodes are ordinary settings. The page does not compare them; the tweak decides whether
/// they agree.
class AutoUnlockController final : public SettingsPage {
  public:
    AutoUnlockController();

  protected:
    Rows rows(PreferenceHelper& make) override;
};

} // namespace lumora
