#pragma once

#include "pages/SettingsPage.h"

namespace lumora {

/// The root page: the master switch, the sleep timer, the links to every other page, and the maker's contact.
class LumoraPreferences final : public SettingsPage {
  public:
    LumoraPreferences();

    /// Writes the whole settings dictionary to the log each time the page appears. Kept on purpose: it is what a
    /// problem report is read against, and so it shows every value as it is, passcodes included.
    void viewWillAppear(bool animated) override;

  protected:
    Rows rows(PreferenceHelper& make) override;

  private:
    void openTwitter(platform::PSSpecifier& sender);
    void openEmail(platform::PSSpecifier& sender);
};

} // namespace lumora
