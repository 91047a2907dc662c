#pragma once

#include "pages/base/SettingsPage.h"
#include "platform/mail/MFMailComposeViewController.h"

namespace lumora {

/// The root page: the master switch, the sleep timer, the links to every other page, and the maker's contact.
class LumoraPreferences final : public SettingsPage, public platform::MFMailComposeViewControllerDelegate {
  public:
    LumoraPreferences();

    /// Writes the whole settings dictionary to the log each time the page appears. Kept on purpose: a problem report is
    /// read against it, so it shows every value as it is, passcodes included.
    void viewWillAppear(bool animated) override;

    void mailComposeController(platform::MFMailComposeViewController& controller, platform::MFMailComposeResult result,
                               const platform::NSError* error) override;

  protected:
    Rows rows(PreferenceHelper& make) override;

  private:
    /// Opens the maker's profile in the device's social-media application.
    void openTwitter(platform::PSSpecifier& sender);
    /// Presents a problem report for the user to complete, with the diagnostic files that can be read.
    void openEmail(platform::PSSpecifier& sender);
};

} // namespace lumora
