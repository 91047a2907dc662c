#pragma once

#include "platform/Export.h"
#include "platform/foundation/LoadProbe.h"

#include <filesystem>
#include <string_view>
#include <utility>

namespace platform {

/// One opening of a library that was loaded by its fixed path; closed when the handle goes.
///
///     LibraryHandle library = openLibrary("/Library/MobileSubstrate/DynamicLibraries/AppList.dylib");
///     if (!library) …   // there is none, and whoever asked has nothing to say about it
///
/// Closing is logical: code once loaded stays for the life of the process, but the classes of a library that nobody has
/// open are found no more. Any thread.
class PLATFORM_EXPORT LibraryHandle {
  public:
    /// A handle that was never got, and closes nothing.
    LibraryHandle() = default;
    LibraryHandle(LibraryHandle&& other) noexcept : code_(std::exchange(other.code_, nullptr)) {}
    LibraryHandle& operator=(LibraryHandle&& other) noexcept {
        std::swap(code_, other.code_);
        return *this;
    }
    LibraryHandle(const LibraryHandle&) = delete;
    LibraryHandle& operator=(const LibraryHandle&) = delete;
    ~LibraryHandle();

    explicit operator bool() const { return code_ != nullptr; }

  private:
    friend LibraryHandle openUntriedLibrary(const std::filesystem::path& path);
    explicit LibraryHandle(void* code) : code_(code) {}

    void* code_ = nullptr;
};

/// Loads a library from its path under the device root, binding its functions when they are first called. An empty
/// handle when there is none, it cannot be loaded, or it would end this process or hold it up: it is tried in another
/// one first.
[[nodiscard]] PLATFORM_EXPORT LibraryHandle openLibrary(std::string_view fixedPath, const ProbeLimits& limits = {});

/// The same for a process that is there to find out what the library does to it.
[[nodiscard]] PLATFORM_EXPORT LibraryHandle openUntriedLibrary(const std::filesystem::path& path);

/// How many handles are open.
[[nodiscard]] PLATFORM_EXPORT int openLibraries();

/// What the libraries that are open themselves export under a name: the first one's that has it, null when none has.
/// Valid for the life of the process.
[[nodiscard]] const void* symbolOfOpenLibraries(const char* name);

} // namespace platform
