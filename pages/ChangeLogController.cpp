#include "pages/ChangeLogController.h"

namespace lumora {

PLATFORM_CLASS(ChangeLogController)

} // namespace lumora
