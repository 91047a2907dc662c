#pragma once

#include <atomic>
#include <cstdio>
#include <filesystem>
#include <sys/types.h>
#include <thread>

namespace tests {

/// lumora-tweak as a process of its own, which ends with this one; counts the changes that it notes.
///
///     const SoakedTweak tweak(LUMORA_TWEAK, folder / "settings.plist");
///     tweak.isReady();
///     tweak.changes();
///
/// Main thread, on which it must be made and let go of.
class SoakedTweak {
  public:
    SoakedTweak(const std::filesystem::path& program, const std::filesystem::path& settings);
    SoakedTweak(const SoakedTweak&) = delete;
    SoakedTweak& operator=(const SoakedTweak&) = delete;
    ~SoakedTweak();

    [[nodiscard]] bool isReady() const { return ready_; }
    [[nodiscard]] pid_t id() const { return id_; }
    [[nodiscard]] long changes() const { return changes_; }

  private:
    void read(std::FILE* lines);

    pid_t id_ = -1;
    std::atomic<bool> ready_{false};
    std::atomic<long> changes_{0};
    std::thread reader_;
};

} // namespace tests
