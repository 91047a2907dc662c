#include "platform/foundation/DeviceRoot.h"

#include <cstdlib>

namespace platform {

namespace fs = std::filesystem;

namespace {

fs::path& givenRoot() {
    static auto& root = *new fs::path;
    return root;
}

fs::path folderOfThisProgram() {
    std::error_code failed;
    return fs::read_symlink("/proc/self/exe", failed).parent_path();
}

} // namespace

fs::path chosenDeviceRoot() {
    if (!givenRoot().empty()) return givenRoot();
    const char* fromEnvironment = std::getenv("LUMORA_ROOT");
    return fromEnvironment ? fromEnvironment : "";
}

fs::path installedDeviceRoot(const fs::path& folder) {
    const fs::path root = (folder / LUMORA_INSTALLED_ROOT).lexically_normal();
    std::error_code failed;
    return fs::is_directory(root / "Library", failed) ? root : fs::path();
}

fs::path deviceRoot() {
    if (fs::path chosen = chosenDeviceRoot(); !chosen.empty()) return chosen;
    static const auto& installed = *new fs::path(installedDeviceRoot(folderOfThisProgram()));
    return installed.empty() ? "/" : installed;
}

void setDeviceRoot(const fs::path& root) {
    givenRoot() = root;
}

fs::path devicePath(std::string_view fixedPath) {
    return deviceRoot() / fs::path(fixedPath).relative_path();
}

fs::path standardBundle() {
    return devicePath("/Library/PreferenceBundles/Lumora.bundle");
}

} // namespace platform
