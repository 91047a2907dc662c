#include "programs/Program.h"

#include "link/Messages.h"
#include "platform/foundation/DeviceRoot.h"
#include "platform/foundation/Unicode.h"
#include "platform/messaging/CFMessagePort.h"

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <unistd.h>

namespace programs {
namespace {

const char* program = "";

/// None of our own code calls exit(). A plug-in or another library has, so the program has not done what it was asked.
void complainOfExit(int exitCode, void* /*unused*/) {
    std::fprintf(stderr, "%s: something that runs in it, such as a plug-in, has called exit()\n", program);
    end(exitCode == 0 ? 1 : exitCode);
}

} // namespace

void begin(const char* name, const std::optional<std::filesystem::path>& root) {
    program = name;
    if (root) platform::setDeviceRoot(*root);
    if (const auto usable = platform::checkPortsFolder(lumora::portName(lumora::kRequestTweakSettings)); !usable)
        complain(usable.error());
    std::signal(SIGXFSZ, SIG_IGN); // the write that meets a file size limit tells of it
    std::signal(SIGCHLD, SIG_DFL); // a parent may have left it ignored, which would hide how children end
    on_exit(complainOfExit, nullptr);
}

int complain(const std::string& why) {
    std::cerr << program << ": " << platform::printable(why) << std::endl;
    return 1;
}

void end(int exitCode) {
    std::fflush(nullptr);
    _exit(exitCode);
}

} // namespace programs
