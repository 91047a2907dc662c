#include "platform/foundation/UserFolder.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace platform {

namespace fs = std::filesystem;

namespace {

fs::path homeFolder() {
    if (const char* home = std::getenv("HOME"); home && *home) return home;
    std::vector<char> texts(1024);
    passwd user{};
    passwd* found = nullptr;
    while (getpwuid_r(getuid(), &user, texts.data(), texts.size(), &found) == ERANGE)
        texts.resize(texts.size() * 2);
    return found ? found->pw_dir : "";
}

} // namespace

fs::path userFolder(const char* variable, const char* nameInHome) {
    const char* named = std::getenv(variable);
    // The rules ignore a relative path.
    if (named && *named == '/') return named;
    const fs::path home = homeFolder();
    return home.empty() ? home : home / nameInHome;
}

Result<void> makeFolders(const fs::path& path) {
    fs::path folder;
    for (const auto& component : path) {
        folder /= component;
        if (::mkdir(folder.c_str(), 0700) == 0) continue;
        auto failed = Result<void>::failure(std::strerror(errno));
        std::error_code unknown;
        if (!fs::is_directory(folder, unknown)) return failed;
    }
    return {};
}

} // namespace platform
