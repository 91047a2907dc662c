#include "platform/foundation/NSLog.h"

#include <array>
#include <atomic>
#include <cerrno> // program_invocation_short_name
#include <chrono>
#include <cstdio>
#include <ctime>
#include <string>
#include <syslog.h>
#include <unistd.h>

namespace platform {

namespace {

std::atomic<bool> onStandardError = true;

} // namespace

void setNSLogOnStandardError(bool on) {
    onStandardError = on;
}

void NSLog(std::string_view message) {
    const std::string text(message);
    // "%s", never the message itself as a format: what is logged comes from other processes.
    syslog(LOG_USER | LOG_NOTICE, "%s", text.c_str());

    if (!onStandardError) return;

    const auto now = std::chrono::system_clock::now();
    const std::time_t seconds = std::chrono::system_clock::to_time_t(now);
    const auto milliseconds =
        std::chrono::duration_cast<std::chrono::milliseconds>(now.time_since_epoch()).count() % 1000;
    std::tm local{};
    localtime_r(&seconds, &local);
    std::array<char, 32> stamp{};
    std::strftime(stamp.data(), stamp.size(), "%Y-%m-%d %H:%M:%S", &local);
    std::fprintf(stderr, "%s.%03d %s[%d] %s\n", stamp.data(), static_cast<int>(milliseconds),
                 program_invocation_short_name, static_cast<int>(getpid()), text.c_str());
}

} // namespace platform
