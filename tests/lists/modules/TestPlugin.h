#pragma once

#include <dlfcn.h>
#include <filesystem>
#include <string>

/// The name of the bundle that this module is in, without its extension: one module is copied into many bundles.
static std::string ownName() {
    Dl_info where{};
    static const char here = 0;
    ::dladdr(&here, &where);
    return std::filesystem::path(where.dli_fname).parent_path().stem().string();
}
