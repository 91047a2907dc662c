#include "settings/host/PrivateTweak.h"

#include "link/Messages.h"
#include "platform/foundation/NSKeyedArchiver.h"
#include "platform/messaging/CFMessagePort.h"
#include "platform/messaging/CFRunLoop.h"

#include <cstdlib>
#include <filesystem>
#include <string>
#include <system_error>
#include <thread>
#include <utility>

namespace settings {

using platform::Result;
namespace fs = std::filesystem;

namespace {

std::string portOfRequests() {
    return lumora::portName(lumora::kRequestTweakSettings);
}

} // namespace

Result<void> PrivateTweak::makeFolder() {
    std::error_code unknown;
    for (const fs::path& parent : {fs::temp_directory_path(unknown), fs::path("/tmp")}) {
        if (!folder_.makeIn(parent)) continue;
        ::setenv("LUMORA_PORTS", folder_.path().c_str(), 1);
        if (platform::checkPortsFolder(portOfRequests())) return {};
        folder_.remove(); // its path is too long for a socket
    }
    return Result<void>::failure("there is no folder for temporary files");
}

Result<void> PrivateTweak::answer(const platform::Dictionary& settings) {
    auto port = platform::openLocalPort(portOfRequests(), [settings](auto&, auto, const auto&) {
        return platform::NSKeyedArchiver::archivedDataWithRootObject(settings);
    });
    if (!port) return Result<void>::failure(port.error());
    std::thread([port = std::move(port).value()] {
        platform::CFRunLoopAddSource(platform::CFRunLoopGetCurrent(), platform::CFMessagePortCreateRunLoopSource(port));
        platform::CFRunLoopRun();
    }).detach();
    return {};
}

} // namespace settings
