#include "platform/messaging/PortWatch.h"

#include "platform/messaging/CFMessagePort.h"

#include <sys/inotify.h>

#include <algorithm>
#include <array>
#include <system_error>
#include <utility>

namespace platform {

namespace fs = std::filesystem;

namespace {

/// The folder itself, or the nearest one above it that exists.
fs::path nearestFolder(fs::path folder) {
    std::error_code unknown;
    while (folder.has_relative_path() && !fs::is_directory(folder, unknown))
        folder = folder.parent_path();
    return folder;
}

} // namespace

PortWatch::PortWatch(std::vector<std::string> ports)
    : ports_(std::move(ports)), folder_((fs::absolute(portsFolder()) / ports_.front()).parent_path()),
      changes_(::inotify_init1(IN_CLOEXEC | IN_NONBLOCK)) {
}

bool PortWatch::look() {
    watchNearestFolder(); // first, so that what changes after the look is noticed
    return std::ranges::all_of(ports_, CFMessagePortIsServed);
}

void PortWatch::forgetChanges() {
    std::array<char, 4096> events{};
    while (changes_ && ::read(changes_.number(), events.data(), events.size()) > 0) {
    }
}

void PortWatch::watchNearestFolder() {
    // A folder of the same name may be another one by now, and a deeper one may come while this one is being watched.
    do {
        watched_ = nearestFolder(folder_);
        const int watch = ::inotify_add_watch(changes_.number(), watched_.c_str(),
                                              IN_CREATE | IN_DELETE | IN_MOVE | IN_CLOSE_WRITE | IN_DELETE_SELF |
                                                  IN_MOVE_SELF | IN_ONLYDIR);
        if (const int before = std::exchange(watch_, watch); before != watch)
            ::inotify_rm_watch(changes_.number(), before);
    } while (watch_ >= 0 && watched_ != nearestFolder(folder_));
}

} // namespace platform
