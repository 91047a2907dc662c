#pragma once

/// Marks what the plug-in kit offers. The settings bundle and our own programs are compiled with a copy of the same
/// code that they keep to themselves, and say so with LUMORA_OWN_COPY; plug-ins take the kit's library.
#ifdef LUMORA_OWN_COPY
#define LUMORA_KIT_EXPORT
#else
#define LUMORA_KIT_EXPORT __attribute__((visibility("default")))
#endif
