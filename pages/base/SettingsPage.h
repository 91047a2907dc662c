#pragma once

#include "link/SettingsSession.h"
#include "pages/base/PreferenceHelper.h"
#include "platform/preferences/PSListController.h"

#include <memory>
#include <vector>

namespace lumora {

/// What all pages share whose rows are bound to preference keys. A page adds its class's session, which it names in its
/// own .cpp, and its table of rows:
///
///     AppsController::AppsController() : SettingsPage(sessionOf<AppsController>()) {}
///     SettingsPage::Rows AppsController::rows(PreferenceHelper& make) { return {make.header("Options"), …}; }
///
/// Main thread.
class LUMORA_KIT_EXPORT SettingsPage : public platform::PSListController {
  public:
    /// Returns once the class's settings dictionary is there; waits without a limit.
    bool init() override;
    /// Built on the first request and kept for the life of the page. A row list that is already there stays as it is.
    platform::PSSpecifierList specifiers() override;

    /// The get and set operations of every editable row.
    platform::Value getValue(platform::PSSpecifier& specifier);
    void setValue(const platform::Value& value, platform::PSSpecifier& specifier);

  protected:
    using Rows = std::vector<platform::PSSpecifierRef>;

    explicit SettingsPage(SettingsSession& session) : session_(session) {}

    /// The page's rows in display order, made anew at each call.
    virtual Rows rows(PreferenceHelper& make) = 0;

    /// Appends the page's rows to those that the row list holds.
    platform::PSSpecifierList buildRows();
    [[nodiscard]] bool hasBuiltRows() const { return helper_ != nullptr; }

    [[nodiscard]] const SettingsSession& session() const { return session_; }

  private:
    SettingsSession& session_;
    std::shared_ptr<PreferenceHelper> helper_;
};

} // namespace lumora
