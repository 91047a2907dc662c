#pragma once

#include <chrono>
#include <filesystem>
#include <future>
#include <iterator>
#include <poll.h>
#include <stdexcept>
#include <string>
#include <thread>

namespace tests {

/// Far longer than anything takes that works at all, on the slowest machine and under sanitizers.
inline constexpr std::chrono::seconds kLongEnough(120);

/// Looks again and again, a few milliseconds apart, at a condition that changes unannounced; false when it still does
/// not hold after a generous while.
template<class Condition>
bool eventually(Condition holds) {
    const auto end = std::chrono::steady_clock::now() + kLongEnough;
    while (!holds()) {
        if (std::chrono::steady_clock::now() > end) return false;
        ::poll(nullptr, 0, 2);
    }
    return true;
}

/// What a promise holds once it is kept. Throws, and says what did not come, when that is not so after a generous
/// while.
template<class T>
T awaited(std::future<T> future, const std::string& what) {
    if (future.wait_for(kLongEnough) != std::future_status::ready) throw std::runtime_error(what + " did not come");
    return future.get();
}

inline std::ptrdiff_t entries(const char* folder) {
    return std::distance(std::filesystem::directory_iterator(folder), std::filesystem::directory_iterator());
}
/// Of this process, as they are now.
inline std::ptrdiff_t threadCount() {
    // A sanitizer starts a thread of its own along with the first one that the program starts: count it from the
    // outset.
    static const bool started = (std::thread([] {}).join(), true);
    static_cast<void>(started);
    return entries("/proc/self/task");
}
inline std::ptrdiff_t descriptorCount() {
    return entries("/proc/self/fd");
}

} // namespace tests
