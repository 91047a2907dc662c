#include "platform/services/DesktopServices.h"

#include "platform/foundation/HelperProgram.h"
#include "platform/foundation/SharedObject.h"

namespace platform {
namespace {

DesktopServices* load() {
    // Silent: to whoever asks, a device without these services is one that sends no mail and opens no address.
    const Result<void*> code = loadSharedObject(platformLibraryFolder() / LUMORA_DESKTOP_LIBRARY, Binding::Lazy);
    if (!code) return nullptr;
    const void* symbol = symbolIn(code.value(), "lumora_desktop_services");
    return symbol ? reinterpret_cast<DesktopServices* (*)()>(const_cast<void*>(symbol))() : nullptr;
}

} // namespace

DesktopServices* desktopServices() {
    static DesktopServices* const services = load();
    return services;
}

} // namespace platform
