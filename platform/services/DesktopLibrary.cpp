#include "platform/services/DesktopLibrary.h"

#include "platform/foundation/HelperProgram.h"
#include "platform/foundation/SharedObject.h"

namespace platform {
namespace {

DesktopLibrary* load() {
    const Result<void*> code = loadSharedObject(platformLibraryFolder() / LUMORA_DESKTOP_LIBRARY, Binding::Lazy);
    const void* function = code ? symbolIn(code.value(), "lumora_desktop_library") : nullptr;
    return function ? reinterpret_cast<DesktopLibrary* (*)()>(const_cast<void*>(function))() : nullptr;
}

} // namespace

DesktopLibrary* desktopLibrary() {
    static DesktopLibrary* const library = load();
    return library;
}

} // namespace platform
