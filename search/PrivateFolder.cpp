#include "search/PrivateFolder.h"

#include <cerrno>
#include <cstdlib>
#include <string>
#include <string_view>
#include <sys/file.h>
#include <sys/stat.h>
#include <system_error>
#include <utility>
#include <vector>

namespace search {
namespace {

namespace fs = std::filesystem;
using platform::FileDescriptor;

constexpr std::string_view kFolderName = "lumora-index-";
constexpr std::string_view kFolderEnd = "XXXXXX";
constexpr int kTries = 3;

/// Holds a folder until it is closed, as the end of its process does. Nothing where somebody else holds it.
FileDescriptor heldFolder(const fs::path& folder) {
    FileDescriptor held(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    if (held && ::flock(held.number(), LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK) held.close();
    return held;
}

bool isOwn(const FileDescriptor& folder) {
    struct stat facts {};
    return ::fstat(folder.number(), &facts) == 0 && facts.st_uid == ::geteuid();
}

/// What processes that were ended have left.
void removeAbandoned(const fs::path& parent) {
    std::error_code failed;
    for (const auto& each : std::vector(fs::directory_iterator(parent, failed), fs::directory_iterator())) {
        const std::string name = each.path().filename().string();
        if (!name.starts_with(kFolderName) || name.size() != kFolderName.size() + kFolderEnd.size()) continue;
        if (const FileDescriptor held = heldFolder(each.path()); held && isOwn(held))
            fs::remove_all(each.path(), failed);
    }
}

} // namespace

bool PrivateFolder::makeIn(const fs::path& parent) {
    remove();
    removeAbandoned(parent);
    for (int i = 0; i < kTries && path_.empty(); ++i) {
        std::string name = (parent / kFolderName).string() + std::string(kFolderEnd);
        if (!::mkdtemp(name.data())) return false;
        lock_ = heldFolder(name);
        std::error_code unknown;
        if (lock_ && fs::exists(name, unknown)) path_ = name; // or another one took it for abandoned just now
    }
    return !path_.empty();
}

void PrivateFolder::remove() {
    std::error_code left;
    if (!path_.empty()) fs::remove_all(std::exchange(path_, {}), left);
    lock_.close();
}

} // namespace search
