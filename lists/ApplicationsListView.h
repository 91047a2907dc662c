#pragma once

#include "lists/SelectionListView.h"
#include "platform/services/ALApplicationList.h"

#include <map>
#include <string>
#include <vector>

namespace lumora {

/// A selection list of applications: what the two of them share. Names and icons come from the application-list
/// library, which is loaded when the view is made and closed when it goes. Without the library every name is missing
/// and only what was saved shows. A view waits 100 ms in all for icons; one that comes later is put into its row then.
/// Main thread.
class ApplicationsListView : public SelectionListView {
  public:
    /// System services that are not to be offered.
    [[nodiscard]] static const std::vector<std::string>& hiddenDisplayIdentifiers();

  protected:
    explicit ApplicationsListView(SettingsSession& session);

    void prepare() override;
    const Titles& titles() const override { return applications_; }
    std::string footer() const override;
    unsigned tableMask() const override;
    void decorate(platform::UITableViewCell& cell, const std::string& identifier) override;

  private:
    platform::LibraryHandle applist_;
    Titles applications_;
    platform::PicturePatience patience_;
    /// Of cells that show their row without its icon until that has been drawn.
    std::map<platform::UITableViewCell*, platform::PictureOrderRef> iconsToCome_;
};

} // namespace lumora
