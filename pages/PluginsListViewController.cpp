#include "pages/PluginsListViewController.h"

namespace lumora {

PLATFORM_CLASS(PluginsListViewController)

} // namespace lumora
