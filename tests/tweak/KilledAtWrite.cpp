// Loaded before all else into a program: kills it at the write to a file, or the renaming, shortening or removal of one,
// that has the number $LUMORA_KILL_AT, counted from 1. Of a write, $LUMORA_KILL_PART thousandths of the bytes are written.

#include <atomic>
#include <csignal>
#include <cstdlib>
#include <sys/stat.h>
#include <sys/types.h>
#include <unistd.h>

#include <dlfcn.h>

namespace {

long numberIn(const char* name) {
    const char* text = std::getenv(name);
    return text ? std::strtol(text, nullptr, 10) : 0;
}

/// Whether it is the one to be killed at.
bool isTheOne() {
    static std::atomic<long> count = 0;
    static const long wanted = numberIn("LUMORA_KILL_AT");
    return ++count == wanted;
}

void die() {
    ::kill(::getpid(), SIGKILL);
}

template<class Function>
Function* next(const char* name) {
    return reinterpret_cast<Function*>(::dlsym(RTLD_NEXT, name));
}

} // namespace

extern "C" {

__attribute__((visibility("default"))) ssize_t write(int file, const void* bytes, std::size_t count) {
    static auto* const real = next<ssize_t(int, const void*, std::size_t)>("write");
    struct stat status {};
    if (::fstat(file, &status) == 0 && S_ISREG(status.st_mode) && file > STDERR_FILENO && isTheOne()) {
        real(file, bytes, count * static_cast<std::size_t>(numberIn("LUMORA_KILL_PART")) / 1000);
        die();
    }
    return real(file, bytes, count);
}

__attribute__((visibility("default"))) int renameat(int from, const char* name, int to, const char* other) noexcept {
    static auto* const real = next<int(int, const char*, int, const char*)>("renameat");
    if (isTheOne()) die();
    return real(from, name, to, other);
}

__attribute__((visibility("default"))) int unlinkat(int folder, const char* name, int flags) noexcept {
    static auto* const real = next<int(int, const char*, int)>("unlinkat");
    if (isTheOne()) die();
    return real(folder, name, flags);
}

__attribute__((visibility("default"))) int ftruncate(int file, off_t size) noexcept {
    static auto* const real = next<int(int, off_t)>(sizeof(off_t) > sizeof(long) ? "ftruncate64" : "ftruncate");
    if (isTheOne()) die();
    return real(file, size);
}
}
