#pragma once

#include "lists/ApplicationsListView.h"

namespace lumora {

/// The content of the "Auto-Unlock Apps" page: which of the chosen applications leave the device locked. It saves those
/// that are disabled, only reads which applications are chosen, and leaves none of them out. Main thread.
class AUAppsListView final : public ApplicationsListView {
  public:
    AUAppsListView();

  protected:
    Selection setupArrays() override;
    const std::vector<std::string>& savedList() const override { return disabled(); }
};

} // namespace lumora
