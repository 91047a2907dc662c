#pragma once

#include "lists/ApplicationsListView.h"

namespace lumora {

/// The content of the "Apps" page: which applications the lock screen shows, in the user's order. Main thread.
class AppsListView final : public ApplicationsListView {
  public:
    AppsListView();

  protected:
    Selection setupArrays() override;
};

} // namespace lumora
