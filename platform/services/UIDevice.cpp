#include "platform/services/UIDevice.h"

#include <glib.h>

#include <memory>
#include <sys/utsname.h>

namespace platform {

const UIDevice& UIDevice::currentDevice() {
    static const UIDevice device(G_OS_INFO_KEY_VERSION_ID);
    return device;
}

std::string UIDevice::systemVersion() const {
    const std::unique_ptr<char, void (*)(void*)> version(g_get_os_info(versionKey_.c_str()), g_free);
    if (version && *version) return version.get();
    utsname names{};
    return uname(&names) == 0 ? names.release : std::string();
}

} // namespace platform
