#include "platform/foundation/DeviceRoot.h"
#include "settings/app/Application.h"

#include <unistd.h>

#include <cstdio>

/// The process ends without joining the main thread, which may be blocked in the bundle for good, and so without the
/// destructors of what that thread may be using.
[[noreturn]] static void end(int exitCode) {
    std::fflush(nullptr);
    _exit(exitCode);
}

int main(int argc, char** argv) {
    std::optional<int> exitCode;
    const settings::Options options = settings::readOptions(argc, argv, exitCode);
    if (exitCode) return *exitCode;
    if (options.root) platform::setDeviceRoot(*options.root);
    end(options.rows ? settings::printRows(options) : settings::runApplication(argc, argv, options));
}
