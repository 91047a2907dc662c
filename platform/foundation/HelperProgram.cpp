#include "platform/foundation/HelperProgram.h"

#include <dlfcn.h>

namespace platform {

namespace fs = std::filesystem;

fs::path platformLibraryFolder() {
    static const char here = 0;
    Dl_info where{};
    if (dladdr(&here, &where) == 0) return {};
    // The loader may have followed a link, such as /lib for /usr/lib, from which other folders are not found.
    std::error_code failed;
    fs::path library = fs::canonical(where.dli_fname, failed);
    return (failed ? fs::path(where.dli_fname) : library).parent_path();
}

fs::path helperProgram(const std::string& name) {
    const fs::path folder = platformLibraryFolder();
    std::error_code failed;
    fs::path installed = (folder / LUMORA_INSTALLED_HELPERS / name).lexically_normal();
    return fs::exists(installed, failed) ? installed : (folder / LUMORA_BUILT_HELPERS / name).lexically_normal();
}

} // namespace platform
