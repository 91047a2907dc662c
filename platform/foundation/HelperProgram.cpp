#include "platform/foundation/HelperProgram.h"

#include <dlfcn.h>

namespace platform {

namespace fs = std::filesystem;

fs::path platformLibraryFolder() {
    static const char here = 0;
    Dl_info where{};
    return dladdr(&here, &where) != 0 ? fs::path(where.dli_fname).parent_path() : fs::path();
}

fs::path helperProgram(const std::string& name) {
    const fs::path folder = platformLibraryFolder();
    std::error_code failed;
    fs::path installed = (folder / LUMORA_INSTALLED_HELPERS / name).lexically_normal();
    return fs::exists(installed, failed) ? installed : (folder / LUMORA_BUILT_HELPERS / name).lexically_normal();
}

} // namespace platform
