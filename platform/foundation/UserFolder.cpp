#include "platform/foundation/UserFolder.h"

#include <cstdlib>
#include <pwd.h>
#include <unistd.h>

namespace platform {

namespace fs = std::filesystem;

namespace {

fs::path homeFolder() {
    if (const char* home = std::getenv("HOME"); home && *home) return home;
    const passwd* user = getpwuid(getuid());
    return user ? user->pw_dir : "/";
}

} // namespace

fs::path userFolder(const char* variable, const char* nameInHome) {
    const char* named = std::getenv(variable);
    // A relative path there is to be ignored.
    return named && *named == '/' ? fs::path(named) : homeFolder() / nameInHome;
}

} // namespace platform
