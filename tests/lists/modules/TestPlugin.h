#pragma once

#include <dlfcn.h>
#include <filesystem>
#include <string>

/// Where this module is: one is copied into many bundles.
inline std::filesystem::path ownFile() {
    Dl_info where{};
    static const char here = 0;
    ::dladdr(&here, &where);
    return where.dli_fname;
}

/// The name of the bundle that this module is in, without its extension.
inline std::string ownName() {
    return ownFile().parent_path().stem().string();
}
