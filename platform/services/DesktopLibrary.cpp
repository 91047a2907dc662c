#include "platform/services/DesktopLibrary.h"

#include "platform/foundation/HelperProgram.h"
#include "platform/foundation/SharedObject.h"

namespace platform {

const void* desktopSymbol(const char* name) {
    static const Result<void*> code = loadSharedObject(platformLibraryFolder() / LUMORA_DESKTOP_LIBRARY, Binding::Lazy);
    return code ? symbolIn(code.value(), name) : nullptr;
}

} // namespace platform
