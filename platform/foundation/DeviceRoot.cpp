#include "platform/foundation/DeviceRoot.h"

#include <cstdlib>

namespace platform {
namespace {

std::filesystem::path& chosenRoot() {
    static auto& root = *new std::filesystem::path;
    return root;
}

} // namespace

std::filesystem::path deviceRoot() {
    if (!chosenRoot().empty()) return chosenRoot();
    const char* fromEnvironment = std::getenv("LUMORA_ROOT");
    return fromEnvironment && *fromEnvironment ? fromEnvironment : "/";
}

void setDeviceRoot(const std::filesystem::path& root) {
    chosenRoot() = root;
}

std::filesystem::path devicePath(std::string_view fixedPath) {
    return deviceRoot() / std::filesystem::path(fixedPath).relative_path();
}

} // namespace platform
