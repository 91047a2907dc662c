#pragma once

/// Marks what the plug-in kit's library exports. The settings bundle and our own programs define LUMORA_OWN_COPY: each
/// is compiled with a hidden copy of the same code.
#ifdef LUMORA_OWN_COPY
#define LUMORA_KIT_EXPORT
#else
#define LUMORA_KIT_EXPORT __attribute__((visibility("default")))
#endif
