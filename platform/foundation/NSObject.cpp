#include "platform/foundation/NSObject.h"

namespace platform {

NSObject::~NSObject() = default;

} // namespace platform
