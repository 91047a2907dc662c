#pragma once

#include "pages/base/SettingsPage.h"

namespace lumora {

/// The Lock Screen Settings page: what of the lock screen to hide, and the texts to show in place of its own.
///
/// Three of its settings stand on the Date View page too. Kept on purpose: each page edits its own copy, and this one
/// shows what it has fetched until it is made again.
class LSSettingsController final : public SettingsPage {
  public:
    LSSettingsController();

  protected:
    Rows rows(PreferenceHelper& make) override;
};

} // namespace lumora
