#include "platform/foundation/SharedObject.h"

#include "platform/foundation/RegularFile.h"

#include <algorithm>
#include <cstring>
#include <dlfcn.h>
#include <link.h>
#include <utility>
#include <vector>

namespace platform {

Result<void> checkSharedObject(const std::filesystem::path& path) {
    const auto refuse = [&path](const char* why) {
        return Result<void>::failure(path.string() + " cannot be loaded: " + why);
    };
    const RegularFile file(path);
    if (!file) return refuse("it is missing, no file, or cannot be read");
    ElfW(Ehdr) header{};
    if (!file.read(0, &header, sizeof header) || std::memcmp(header.e_ident, ELFMAG, SELFMAG) != 0 ||
        header.e_phentsize != sizeof(ElfW(Phdr)))
        return {}; // the loader says more exactly what is wrong
    std::vector<ElfW(Phdr)> segments(header.e_phnum);
    if (!file.read(header.e_phoff, segments.data(), segments.size() * sizeof(ElfW(Phdr))))
        return refuse("it is cut short");
    const bool whole = std::all_of(segments.begin(), segments.end(), [&file](const ElfW(Phdr) & segment) {
        return segment.p_type != PT_LOAD ||
               (segment.p_offset <= file.size() && segment.p_filesz <= file.size() - segment.p_offset);
    });
    return whole ? Result<void>() : refuse("it is cut short");
}

Result<void*> loadSharedObject(const std::filesystem::path& file, Binding binding, FileCheck check) {
    const Result<void> sound = check == FileCheck::None ? Result<void>() : checkSharedObject(file);
    if (!sound) return Result<void*>::failure(sound.error());
    // RTLD_NODELETE: objects and page classes of the library outlive every request to unload it.
    //
    // Kept on purpose: an exception of the library's initialisers ends the process here, since dlopen() is declared to
    // throw nothing. Caught further out, it would leave the loader with its lock held for ever and with a library that
    // it takes for a whole one.
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
