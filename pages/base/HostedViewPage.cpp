#include "pages/base/HostedViewPage.h"

namespace lumora {

void HostedViewPage::viewWillAppear(bool animated) {
    PSListController::viewWillAppear(animated);
    if (platform::UINavigationItem* item = navigationItem()) item->title = title();
    const platform::CGRect frame = view() ? view()->frame() : platform::CGRect{};
    setView(makeView(frame));
}

} // namespace lumora
