/* The tag by which Settings checks a plug-in's settings page before it uses the page. A page is a C++ object that
 * shares its classes with the Settings application, so both must be made with the same version of the kit, the same
 * compiler and the same standard library; LUMORA_KIT_TAG names all three. Authors include
 * <lumora/SettingsController.h>.
 */
#ifndef LUMORA_KIT_TAG_H
#define LUMORA_KIT_TAG_H

#include <lumora/AppView.h>

#ifdef __cplusplus
#include <version> /* names the standard library */
#endif

/* Goes up with every change that a compiled page does not survive; see SettingsController.cpp. */
#define LUMORA_KIT_VERSION 6

#define LUMORA_KIT_QUOTED(number) #number
#define LUMORA_KIT_TEXT(number) LUMORA_KIT_QUOTED(number)

#if defined(__clang__)
#define LUMORA_KIT_COMPILER "clang " LUMORA_KIT_TEXT(__clang_major__)
#elif defined(__GNUC__)
#define LUMORA_KIT_COMPILER "gcc " LUMORA_KIT_TEXT(__GNUC__)
#else
#define LUMORA_KIT_COMPILER "another compiler"
#endif

#if defined(_GLIBCXX_DEBUG)
#define LUMORA_KIT_LIBRARY "libstdc++ for debugging"
#elif defined(_GLIBCXX_USE_CXX11_ABI)
#define LUMORA_KIT_LIBRARY "libstdc++ abi " LUMORA_KIT_TEXT(_GLIBCXX_USE_CXX11_ABI)
#elif defined(_LIBCPP_ABI_VERSION)
#define LUMORA_KIT_LIBRARY "libc++ abi " LUMORA_KIT_TEXT(_LIBCPP_ABI_VERSION)
#else
#define LUMORA_KIT_LIBRARY "another standard library"
#endif

#define LUMORA_KIT_TAG "kit " LUMORA_KIT_TEXT(LUMORA_KIT_VERSION) ", " LUMORA_KIT_COMPILER ", " LUMORA_KIT_LIBRARY

struct LumoraSettingsController {
    const char* tag;       /* LUMORA_KIT_TAG, as compiled into the plug-in */
    const void* pageClass; /* a platform::ClassRecord; read only if the tag is the reader's own */
};

#endif
