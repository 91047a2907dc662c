#include "settings/host/TweakWatch.h"

#include "link/Messages.h"
#include "platform/messaging/CFMessagePort.h"

#include <sys/inotify.h>

#include <array>
#include <system_error>
#include <utility>

namespace settings {

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

TweakWatch::TweakWatch()
    : folder_((fs::absolute(platform::portsFolder()) / lumora::portName(lumora::kUpdateSettings)).parent_path()),
      changes_(::inotify_init1(IN_CLOEXEC | IN_NONBLOCK)) {
}

bool TweakWatch::look() {
    watchNearestFolder(); // first, so that what changes after the look is noticed
    return platform::CFMessagePortIsServed(lumora::portName(lumora::kUpdateSettings)) &&
           platform::CFMessagePortIsServed(lumora::portName(lumora::kRequestTweakSettings));
}

void TweakWatch::forgetChanges() {
    std::array<char, 4096> events{};
    while (changes_ && ::read(changes_.number(), events.data(), events.size()) > 0) {
    }
}

void TweakWatch::watchNearestFolder() {
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

} // namespace settings
