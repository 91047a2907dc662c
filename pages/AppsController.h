#pragma once

#include "pages/base/SettingsPage.h"

namespace lumora {

/// The Lockscreen Apps page: which applications the lock screen shows, and how their icons look and behave.
class AppsController final : public SettingsPage {
  public:
    AppsController();

  protected:
    Rows rows(PreferenceHelper& make) override;
};

} // namespace lumora
