#pragma once

#include "link/SettingsSession.h"
#include "pages/base/PreferenceHelper.h"
#include "platform/preferences/PSListController.h"

#include <memory>
#include <vector>

namespace lumora {

/// A page of rows bound to preference keys: what all such pages share. A page adds its class's session, which it
/// names in its own .cpp, and its table of rows:
///
///     AppsController::AppsController() : SettingsPage(sessionOf<AppsController>()) {}
///     SettingsPage::Rows AppsController::rows(PreferenceHelper& make) { return {make.header("Options"), …}; }
///
/// Main thread.
class LUMORA_KIT_EXPORT SettingsPage : public platform::PSListController {
  public:
    /// Returns only after the class's settings dictionary is there, however long that takes.
    bool init() override;
    /// Built on the first request and kept for the life of the page; a row list that is there already stays as it is.
    platform::PSSpecifierList specifiers() override;

    /// The get and set operations of every editable row.
    platform::Value getValue(platform::PSSpecifier& specifier);
    void setValue(const platform::Value& value, platform::PSSpecifier& specifier);

  protected:
    using Rows = std::vector<platform::PSSpecifierRef>;

    explicit SettingsPage(SettingsSession& session) : session_(session) {}

    /// The page's rows in display order, made anew at each call.
    virtual Rows rows(PreferenceHelper& make) = 0;

    /// Puts the page's rows behind those that the row list holds.
    platform::PSSpecifierList buildRows();
    [[nodiscard]] bool hasBuiltRows() const { return helper_ != nullptr; }

    [[nodiscard]] const SettingsSession& session() const { return session_; }

  private:
    SettingsSession& session_;
    std::shared_ptr<PreferenceHelper> helper_;
};

} // namespace lumora
