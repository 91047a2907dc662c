#include "link/Messages.h"
#include "platform/foundation/DeviceRoot.h"
#include "platform/foundation/NSLog.h"
#include "platform/messaging/CFMessagePort.h"
#include "settings/app/Application.h"

#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>

/// The process ends without joining the main thread, which may be blocked in the bundle for good, and so without the
/// destructors of what that thread may be using.
[[noreturn]] static void end(int exitCode) {
    std::fflush(nullptr);
    _exit(exitCode);
}

/// None of our own code calls exit(). A plug-in or another library has, so Settings has not done what it was asked.
static void complainOfExit(int exitCode, void* /*unused*/) {
    std::fputs("lumora-settings: something that runs in it, such as a plug-in, has called exit()\n", stderr);
    end(exitCode == 0 ? 1 : exitCode);
}

// Nothing throws here but for want of memory, and that had better end the program.
// NOLINTNEXTLINE(bugprone-exception-escape)
int main(int argc, char** argv) {
    std::optional<int> exitCode;
    const settings::Options options = settings::readOptions(argc, argv, exitCode);
    if (exitCode) return *exitCode;
    platform::setNSLogOnStandardError(options.verbose);
    if (options.root) platform::setDeviceRoot(*options.root);
    if (const auto usable = platform::checkPortsFolder(lumora::portName(lumora::kRequestTweakSettings)); !usable)
        settings::complain(usable.error());
    std::signal(SIGXFSZ, SIG_IGN); // the write that meets a file size limit tells of it
    std::signal(SIGCHLD, SIG_DFL); // a parent may have left it ignored, which would hide how children end
    on_exit(complainOfExit, nullptr);
    end(options.rows ? settings::printRows(options) : settings::runApplication(argc, argv, options));
}
