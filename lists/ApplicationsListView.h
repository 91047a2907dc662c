#pragma once

#include "lists/SelectionListView.h"
#include "platform/services/ALApplicationList.h"

#include <map>
#include <string>
#include <vector>

namespace lumora {

/// The base of the two selection lists of applications. Names and icons come from the application-list library, which
/// the view opens when it is made and closes when it goes. Without the library the list shows what was saved, without
/// names. A view waits 100 ms in all for icons; later icons appear in their rows as they come. Main thread.
class ApplicationsListView : public SelectionListView {
  public:
    /// The identifiers of system services, which no list offers.
    [[nodiscard]] static const std::vector<std::string>& hiddenDisplayIdentifiers();

  protected:
    ApplicationsListView(SettingsSession& session, const char* savedKey);

    void prepare() override;
    const Titles& titles() const override { return applications_; }
    std::string footer() const override;
    unsigned tableMask() const override;
    void decorate(platform::UITableViewCell& cell, const std::string& identifier) override;

  private:
    platform::LibraryHandle applist_;
    Titles applications_;
    platform::PicturePatience patience_;
    /// The orders for icons that are still being drawn, by the cell that awaits them.
    std::map<platform::UITableViewCell*, platform::PictureOrderRef> iconsToCome_;
};

} // namespace lumora
