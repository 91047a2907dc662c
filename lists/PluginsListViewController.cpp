#include "lists/PluginsListViewController.h"

#include "lists/PluginsListView.h"

namespace lumora {

PLATFORM_CLASS(PluginsListViewController)

std::shared_ptr<platform::UIView> PluginsListViewController::makeView(const platform::CGRect& frame) {
    return platform::make<PluginsListView>(frame);
}

} // namespace lumora
