#include "platform/services/DesktopServices.h"

#include "platform/foundation/SharedObject.h"

#include <dlfcn.h>
#include <filesystem>

namespace platform {
namespace {

/// The folder of the library that this code is in.
std::filesystem::path ownFolder() {
    static const char here = 0;
    Dl_info where{};
    return dladdr(&here, &where) != 0 ? std::filesystem::path(where.dli_fname).parent_path() : std::filesystem::path();
}

DesktopServices* load() {
    // Silent: to whoever asks, a device without these services is one that sends no mail and opens no address.
    const Result<void*> code = loadSharedObject(ownFolder() / LUMORA_DESKTOP_LIBRARY, Binding::Lazy);
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
