#include "platform/foundation/DeviceRoot.h"
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

/// Nothing of ours calls exit(): what does is a plug-in or another library, and Settings has not done what it was
/// asked.
static void complainOfExit(int exitCode, void* /*unused*/) {
    std::fputs("lumora-settings: something that runs in it, such as a plug-in, has called exit()\n", stderr);
    end(exitCode == 0 ? 1 : exitCode);
}

int main(int argc, char** argv) {
    std::optional<int> exitCode;
    const settings::Options options = settings::readOptions(argc, argv, exitCode);
    if (exitCode) return *exitCode;
    if (options.root) platform::setDeviceRoot(*options.root);
    std::signal(SIGXFSZ, SIG_IGN); // a limit of files is told by the write that meets it
    std::signal(SIGCHLD, SIG_DFL); // whoever starts this may ignore it, and then no child's end could be known
    on_exit(complainOfExit, nullptr);
    end(options.rows ? settings::printRows(options) : settings::runApplication(argc, argv, options));
}
