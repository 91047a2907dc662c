#pragma once

#include "lists/SelectionListView.h"
#include "platform/services/ALApplicationList.h"

#include <string>
#include <vector>

namespace lumora {

/// A selection list of applications: what the two of them share. Names and icons come from the application-list
/// library, which is loaded when the view is made and closed when it goes. Without the library every name is missing
/// and only what was saved shows. Main thread.
class ApplicationsListView : public SelectionListView {
  public:
    /// System services that are not to be offered.
    [[nodiscard]] static const std::vector<std::string>& hiddenDisplayIdentifiers();

  protected:
    using SelectionListView::SelectionListView;

    void prepare() override;
    const Titles& titles() const override { return applications_; }
    std::string footer() const override;
    unsigned tableMask() const override;
    void decorate(platform::UITableViewCell& cell, const std::string& identifier) override;

  private:
    platform::LibraryHandle applist_;
    Titles applications_;
};

} // namespace lumora
