#pragma once

#include <atomic>

namespace tests {

/// What the test program has synced to the device by now, files and folders.
inline std::atomic<int> synced = 0;
/// While it is set, syncing fails.
inline std::atomic<bool> syncingFails = false;

} // namespace tests
