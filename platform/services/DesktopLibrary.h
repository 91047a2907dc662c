#pragma once

namespace platform {

/// A function of liblumora-desktop, by name; null when that library is not there or cannot be loaded. It holds what only
/// the desktop's own libraries know. Those cost every program that links them milliseconds at its start, so what calls
/// them stands in a library beside this one, which the first call loads, on the main thread. Silent: to whoever asks, a
/// device without it is one that sends no mail and opens no address.
[[nodiscard]] const void* desktopSymbol(const char* name);

/// The one object of a kind that the library has, null without it: the function of that name gives it.
template<class Services>
Services* desktopServices(const char* function) {
    const void* symbol = desktopSymbol(function);
    return symbol ? reinterpret_cast<Services* (*)()>(const_cast<void*>(symbol))() : nullptr;
}

} // namespace platform
