#include "pages/AUAppsListController.h"

namespace lumora {

PLATFORM_CLASS(AUAppsListController)

} // namespace lumora
