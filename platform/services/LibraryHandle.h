#pragma once

#include "platform/Export.h"
#include "platform/foundation/LoadProbe.h"

#include <filesystem>
#include <memory>
#include <string_view>

namespace platform {

/// Closes a library that was opened by its fixed path.
struct CloseLibrary {
    PLATFORM_EXPORT void operator()(void* code) const;
};

/// One opening of a library, closed when the handle goes.
///
///     LibraryHandle library = openLibrary("/Library/MobileSubstrate/DynamicLibraries/AppList.dylib");
///     if (!library) … // there is none
///
/// Closing is logical: code once loaded stays for the life of the process, but the classes of a library without a
/// handle are no longer found. Any thread.
using LibraryHandle = std::unique_ptr<void, CloseLibrary>;

/// Loads a library from its path under the device root, binding its functions when they are first called. The handle is
/// empty when there is no such library, when it cannot be loaded, and when it ends or holds up the process in which it
/// is tried first.
[[nodiscard]] PLATFORM_EXPORT LibraryHandle openLibrary(std::string_view fixedPath, const ProbeLimits& limits = {});

/// The same without a trial, for the process that is the trial.
[[nodiscard]] PLATFORM_EXPORT LibraryHandle openUntriedLibrary(const std::filesystem::path& path);

/// How many handles are open.
[[nodiscard]] PLATFORM_EXPORT int openLibraries();

/// What the open libraries themselves export under a name: that of the first to have it, null when none has. Valid for
/// the life of the process.
[[nodiscard]] const void* symbolOfOpenLibraries(const char* name);

} // namespace platform
