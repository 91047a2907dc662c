#include "pages/ProblemReport.h"

#include "platform/services/UIDevice.h"

#include <sys/utsname.h>
#include <utility>

namespace lumora {

ProblemReport ProblemReport::ofThisDevice() {
    utsname names{};
    const bool known = uname(&names) == 0;
    return {known ? names.machine : "", platform::UIDevice::currentDevice().systemVersion()};
}

ProblemReport::ProblemReport(std::string deviceModel, std::string firmware)
    : deviceModel_(std::move(deviceModel)), firmware_(std::move(firmware)) {
}

std::string ProblemReport::subject() const {
    return "Lumora -- " + deviceModel_ + "(" + firmware_ + ")";
}

std::string ProblemReport::body() const {
    return "Application: Lumora\nDevice: " + deviceModel_ + "\nFirmware: " + firmware_ +
           "\n\nComments:\nPlease describe in detail what's wrong\n\nReproduce:\nHow can I reproduce this issue?";
}

} // namespace lumora
