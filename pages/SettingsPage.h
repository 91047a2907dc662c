#pragma once

#include "link/SettingsSession.h"
#include "pages/PreferenceHelper.h"
#include "platform/preferences/PSListController.h"

#include <memory>
#include <vector>

namespace lumora {

/// A page of rows bound to preference keys: what all such pages share. A page adds its class's session, which it
/// defines in its own .cpp, and its table of rows:
///
///     static auto& session = *new SettingsSession;
///     AppsController::AppsController() : SettingsPage(session) {}
///     SettingsPage::Rows AppsController::rows(PreferenceHelper& make) { return {make.header("Options"), …}; }
///
/// Main thread.
class LUMORA_KIT_EXPORT SettingsPage : public platform::PSListController {
  public:
    /// Returns only after the class's settings dictionary is there, however long that takes.
    bool init() override;
    /// Built on the first request and kept for the life of the page. Rows that are in the row list by then stand ahead.
    platform::PSSpecifierList specifiers() override;

    /// The get and set operations of every editable row.
    platform::Value getValue(platform::PSSpecifier& specifier);
    void setValue(const platform::Value& value, platform::PSSpecifier& specifier);

  protected:
    using Rows = std::vector<platform::PSSpecifierRef>;

    explicit SettingsPage(SettingsSession& session) : session_(session) {}

    /// The page's rows in display order, made anew at each call.
    virtual Rows rows(PreferenceHelper& make) = 0;

    [[nodiscard]] const SettingsSession& session() const { return session_; }

  private:
    SettingsSession& session_;
    std::shared_ptr<PreferenceHelper> helper_;
};

} // namespace lumora
