#pragma once

#include "link/SettingsSession.h"
#include "pages/base/PreferenceHelper.h"
#include "platform/preferences/PSListController.h"

#include <memory>
#include <vector>

namespace lumora {

/// The base of all pages whose rows are bound to preference keys. A page adds the session of its class, which it names
/// in its own .cpp, and its table of rows:
///
///     AppsController::AppsController() : SettingsPage(sessionOf<AppsController>()) {}
///     SettingsPage::Rows AppsController::rows(PreferenceHelper& make) { return {make.header("Options"), …}; }
///
/// Main thread.
class LUMORA_KIT_EXPORT SettingsPage : public platform::PSListController {
  public:
    /// Returns once the session has its settings, and waits for them without a limit.
    bool init() override;
    /// Builds the row list on the first request and keeps it for the life of the page. A row list that is already there
    /// stays as it is.
    platform::PSSpecifierList specifiers() override;

    /// The get and set operations of every editable row; the row's identifier is the preference key.
    platform::Value getValue(platform::PSSpecifier& specifier);
    void setValue(const platform::Value& value, platform::PSSpecifier& specifier);

  protected:
    using Rows = std::vector<platform::PSSpecifierRef>;

    explicit SettingsPage(SettingsSession& session) : session_(session) {}

    /// Makes the page's rows, in display order.
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
