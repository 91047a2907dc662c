#pragma once

#include "pages/base/SettingsPage.h"

namespace lumora {

/// The Date View page: the lock screen's clock and date, their font, sizes and place.
///
/// Three of its settings are on the Lock Screen Settings page too; each page edits its own copy.
class LSDateViewSettings final : public SettingsPage {
  public:
    LSDateViewSettings();

  protected:
    Rows rows(PreferenceHelper& make) override;
};

} // namespace lumora
