#include "platform/services/AddressHandlers.h"

#include "platform/services/DesktopLibrary.h"

namespace platform {

AddressHandlers* addressHandlers() {
    static auto* const handlers = desktopServices<AddressHandlers>("lumora_address_handlers");
    return handlers;
}

} // namespace platform
