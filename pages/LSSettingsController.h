#pragma once

#include "pages/base/SettingsPage.h"

namespace lumora {

/// The Lock Screen Settings page: which parts of the lock screen to hide, and which texts to show in place of its own.
///
/// Three of its settings are on the Date View page too. Kept on purpose: each page edits its own copy, and this one
/// shows what it fetched until it is made again.
class LSSettingsController final : public SettingsPage {
  public:
    LSSettingsController();

  protected:
    Rows rows(PreferenceHelper& make) override;
};

} // namespace lumora
