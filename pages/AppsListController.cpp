#include "pages/AppsListController.h"

namespace lumora {

PLATFORM_CLASS(AppsListController)

} // namespace lumora
