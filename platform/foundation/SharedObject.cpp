#include "platform/foundation/SharedObject.h"

#include "platform/foundation/ElfFile.h"

#include <dlfcn.h>
#include <link.h>

namespace platform {

Result<void*> loadSharedObject(const std::filesystem::path& file, Binding binding) {
    if (const std::string fault = faultOfSharedObject(RegularFile(file)); !fault.empty())
        return Result<void*>::failure(file.string() + " cannot be loaded: " + fault);
    // RTLD_NODELETE: objects and page classes of the library outlive every request to unload it.
    //
    // An exception of the library's own initialisers is not caught, and must not be: it would unwind through the
    // loader, which would then hold its lock for ever and take the library for one that is whole. dlopen() is declared
    // to throw nothing, so such an exception ends the process here.
    void* handle = dlopen(file.c_str(), (binding == Binding::Lazy ? RTLD_LAZY : RTLD_NOW) | RTLD_LOCAL | RTLD_NODELETE);
    if (!handle) return Result<void*>::failure(dlerror());
    return handle;
}

const void* symbolIn(void* object, const std::string& name) {
    const void* symbol = dlsym(object, name.c_str());
    const link_map* own = nullptr;
    void* holder = nullptr;
    Dl_info where{};
    if (!symbol || dlinfo(object, RTLD_DI_LINKMAP, &own) != 0 || dladdr1(symbol, &where, &holder, RTLD_DL_LINKMAP) == 0)
        return nullptr;
    return holder == own ? symbol : nullptr;
}

} // namespace platform
