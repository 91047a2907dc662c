#include "pickers/ChangeLogController.h"

#include "pickers/ChangeLog.h"

namespace lumora {

PLATFORM_CLASS(ChangeLogController)

std::shared_ptr<platform::UIView> ChangeLogController::makeView(const platform::CGRect& frame) {
    return platform::make<ChangeLog>(frame);
}

} // namespace lumora
