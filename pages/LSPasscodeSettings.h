#pragma once

#include "pages/base/SettingsPage.h"

namespace lumora {

/// The Passcode View page: how the tweak draws the lock screen's passcode entry.
class LSPasscodeSettings final : public SettingsPage {
  public:
    LSPasscodeSettings();

  protected:
    Rows rows(PreferenceHelper& make) override;
};

} // namespace lumora
