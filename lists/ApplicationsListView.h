#pragma once

#include "lists/SelectionListView.h"
#include "platform/services/ALApplicationList.h"

#include <map>
#include <string>
#include <vector>

namespace lumora {

/// What the two selection lists of applications share. Names and icons come from the application-list library, which is
/// loaded when the view is made and closed when it goes. Without the library the list shows what was saved, without
/// names. A view waits 100 ms in all for icons; later ones are put into their rows as they come. Main thread.
class ApplicationsListView : public SelectionListView {
  public:
    /// System services that the list does not offer.
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
    /// The orders of cells whose icon is still being drawn.
    std::map<platform::UITableViewCell*, platform::PictureOrderRef> iconsToCome_;
};

} // namespace lumora
