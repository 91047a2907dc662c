#include "platform/foundation/DeviceRoot.h"
#include "settings/app/Application.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>

/// The process ends without joining the main thread, which may be blocked in the bundle for good, and so without the
/// destructors of what that thread may be using.
[[noreturn]] static void end(int exitCode) {
    std::fflush(nullptr);
    _exit(exitCode);
}

/// The toolkit keeps compiled code in the user's cache and runs it at the next start: nobody else is to change it
/// there. The programs that this one starts have this umask too; none of them needs a wider one.
static void letNobodyElseWrite() {
    ::umask(::umask(S_IRWXG | S_IRWXO) | S_IWGRP | S_IWOTH);
}

int main(int argc, char** argv) {
    std::optional<int> exitCode;
    const settings::Options options = settings::readOptions(argc, argv, exitCode);
    if (exitCode) return *exitCode;
    letNobodyElseWrite();
    if (options.root) platform::setDeviceRoot(*options.root);
    end(options.rows ? settings::printRows(options) : settings::runApplication(argc, argv, options));
}
