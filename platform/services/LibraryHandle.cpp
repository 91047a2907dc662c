#include "platform/services/LibraryHandle.h"

#include "platform/foundation/DeviceRoot.h"
#include "platform/foundation/LoadVerdicts.h"
#include "platform/foundation/SharedObject.h"

#include <algorithm>
#include <dlfcn.h>
#include <mutex>
#include <vector>

namespace platform {
namespace {

/// What each open handle got from the loader, in the order of opening. Never destroyed, as handles may outlive statics.
struct OpenLibraries {
    std::mutex mutex;
    std::vector<void*> codes;
};

OpenLibraries& all() {
    static auto& libraries = *new OpenLibraries;
    return libraries;
}

} // namespace

LibraryHandle openLibrary(std::string_view fixedPath, const ProbeLimits& limits) {
    const std::filesystem::path path = devicePath(fixedPath);
    // Silent, here and below: a stranger's library may be missing or no good, and a list without it is all that the
    // user is to see.
    if (!mayBeLoaded(ForeignCode::applicationList, {{path, {path}}}, limits).front()) return {};
    return openUntriedLibrary(path);
}

LibraryHandle openUntriedLibrary(const std::filesystem::path& path) {
    const Result<void*> code = loadSharedObject(path, Binding::Lazy);
    if (!code) return {};
    const std::lock_guard lock(all().mutex);
    all().codes.push_back(code.value());
    return LibraryHandle(code.value());
}

void CloseLibrary::operator()(void* code) const {
    const std::lock_guard lock(all().mutex);
    std::vector<void*>& codes = all().codes;
    codes.erase(std::find(codes.begin(), codes.end(), code));
    dlclose(code);
}

int openLibraries() {
    const std::lock_guard lock(all().mutex);
    return int(all().codes.size());
}

const void* symbolOfOpenLibraries(const char* name) {
    const std::lock_guard lock(all().mutex);
    for (void* code : all().codes)
        if (const void* symbol = symbolIn(code, name)) return symbol;
    return nullptr;
}

} // namespace platform
