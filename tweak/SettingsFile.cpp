#include "tweak/SettingsFile.h"

#include <cerrno>
#include <cstdio>
#include <system_error>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

using platform::Data;
using platform::FileDescriptor;
using platform::Result;

namespace lumora {
namespace {

/// As much as one message can carry: a larger file is not ours.
constexpr off_t kLargestFile = off_t{64} << 20;

constexpr mode_t kOwnerOnly = S_IRUSR | S_IWUSR;

std::string systemError() {
    return std::generic_category().message(errno);
}

/// If the path is a link, the file behind it is the one to replace, or to make.
std::filesystem::path behindLinks(const std::filesystem::path& path, std::error_code& failed) {
    std::filesystem::path file = std::filesystem::absolute(path, failed);
    constexpr int most = 40; // as the system follows
    std::error_code isNoLink;
    for (int links = 0; !failed; ++links) {
        file = std::filesystem::weakly_canonical(file, failed);
        // One to a missing file is still there.
        const std::filesystem::path target = std::filesystem::read_symlink(file, isNoLink);
        if (isNoLink) break;
        file = file.parent_path() / target;
        if (links == most) failed = std::make_error_code(std::errc::too_many_symbolic_link_levels);
    }
    return file;
}

} // namespace

Result<std::unique_ptr<SettingsFile>> SettingsFile::open(const std::filesystem::path& path, Log log) {
    using Opened = Result<std::unique_ptr<SettingsFile>>;
    std::error_code failed;
    const std::filesystem::path file = behindLinks(path, failed);
    if (failed || file.filename().empty()) return Opened::failure(path.string() + " is no name for a settings file");
    std::filesystem::create_directories(file.parent_path(), failed);
    if (failed)
        return Opened::failure("cannot make the folder " + file.parent_path().string() + ": " + failed.message());

    FileDescriptor folder(::open(file.parent_path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!folder) return Opened::failure("cannot open the folder " + file.parent_path().string() + ": " + systemError());
    struct stat status {};
    if (fstatat(folder.number(), file.filename().c_str(), &status, 0) == 0 && !S_ISREG(status.st_mode))
        return Opened::failure(file.string() + " is no regular file");

    const std::string lockName = file.filename().string() + ".lock";
    FileDescriptor lock(
        openat(folder.number(), lockName.c_str(), O_RDWR | O_CREAT | O_NOFOLLOW | O_CLOEXEC, kOwnerOnly));
    if (!lock) return Opened::failure("cannot write in " + file.parent_path().string() + ": " + systemError());
    if (flock(lock.number(), LOCK_EX | LOCK_NB) != 0)
        return Opened::failure(errno == EWOULDBLOCK ? "another lumora-tweak is running: it holds " + file.string()
                                                    : "cannot lock " + file.string() + ": " + systemError());
    return std::unique_ptr<SettingsFile>(new SettingsFile(file, std::move(folder), std::move(lock), std::move(log)));
}

SettingsFile::SettingsFile(std::filesystem::path path, FileDescriptor folder, FileDescriptor lock, Log log)
    : path_(std::move(path)), name_(path_.filename().string()), synced_(name_ + ".synced"), folder_(std::move(folder)),
      lock_(std::move(lock)), log_(std::move(log)), syncing_([this] { syncWhenChanged(); }) {
}

SettingsFile::~SettingsFile() {
    {
        const std::lock_guard held(state_);
        closing_ = true;
    }
    changed_.notify_one();
    syncing_.join();
}

Result<std::optional<Data>> SettingsFile::read() const {
    using Read = Result<std::optional<Data>>;
    const auto open = [&] {
        return FileDescriptor(openat(folder_.number(), name_.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    };
    FileDescriptor file = open();
    if (!file && errno == ENOENT) {
        if (renameat(folder_.number(), synced_.c_str(), folder_.number(), name_.c_str()) != 0)
            return errno == ENOENT ? Read(std::nullopt) : Read::failure(systemError());
        file = open();
    }
    struct stat status {};
    if (!file || fstat(file.number(), &status) != 0) return Read::failure(systemError());
    if (status.st_size > kLargestFile) return Read::failure("it is larger than any settings file");

    Data bytes(static_cast<std::size_t>(status.st_size));
    std::size_t got = 0;
    while (got < bytes.size()) {
        const ssize_t more = ::read(file.number(), bytes.data() + got, bytes.size() - got);
        if (more < 0 && errno == EINTR) continue;
        if (more < 0) return Read::failure(systemError());
        if (more == 0) break;
        got += static_cast<std::size_t>(more);
    }
    bytes.resize(got);
    return {std::move(bytes)};
}

Result<std::filesystem::path> SettingsFile::setAside() const {
    using Name = Result<std::filesystem::path>;
    for (int number = 1; number < 10'000; ++number) {
        const std::string aside = name_ + ".unreadable" + (number == 1 ? "" : "-" + std::to_string(number));
        // Unlike a plain rename, this one fails where the name is taken.
        if (renameat2(folder_.number(), name_.c_str(), folder_.number(), aside.c_str(), RENAME_NOREPLACE) == 0)
            return path_.parent_path() / aside;
        if (errno != EEXIST) return Name::failure(systemError());
    }
    return Name::failure("too many such files stand there already");
}

Result<void> SettingsFile::replace(const Data& bytes) {
    const std::string fresh = name_ + ".new";
    // A process that was killed may have left such a file behind.
    unlinkat(folder_.number(), fresh.c_str(), 0);
    Result<void> written = write(bytes, fresh);
    std::unique_lock held(state_);
    // After a power cut, the new file may be under the name without its bytes. A copy that is kept already is an older one.
    [[maybe_unused]] const bool isKept =
        written && !unsynced_ && linkat(folder_.number(), name_.c_str(), folder_.number(), synced_.c_str(), 0) == 0;
    if (written && renameat(folder_.number(), fresh.c_str(), folder_.number(), name_.c_str()) != 0)
        written = Result<void>::failure(systemError());
    if (!written) {
        unlinkat(folder_.number(), fresh.c_str(), 0);
        return Result<void>::failure("cannot write " + path_.string() + ": " + written.error());
    }
    unsynced_ = true;
    held.unlock();
    changed_.notify_one();
    return {};
}

Result<void> SettingsFile::write(const Data& bytes, const std::string& name) const {
    FileDescriptor file(
        openat(folder_.number(), name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, kOwnerOnly));
    // Some file systems tell only then that they have no room.
    if (!file || !file.write(bytes.data(), bytes.size()) || !file.close()) return Result<void>::failure(systemError());
    return {};
}

void SettingsFile::syncWhenChanged() {
    std::unique_lock held(state_);
    while (true) {
        changed_.wait(held, [this] { return unsynced_ || closing_; });
        changed_.wait_for(held, kSyncDelay, [this] { return closing_; });
        if (!unsynced_) return;
        unsynced_ = false;
        held.unlock();
        sync();
        held.lock();
    }
}

void SettingsFile::sync() {
    const FileDescriptor file(openat(folder_.number(), name_.c_str(), O_RDONLY | O_CLOEXEC));
    if (!file || fsync(file.number()) != 0 || fsync(folder_.number()) != 0)
        return log_("cannot sync " + path_.string() + " to the device: " + systemError());
    const std::lock_guard held(state_);
    if (!unsynced_) unlinkat(folder_.number(), synced_.c_str(), 0);
}

void SettingsFile::settle() {
    if (faccessat(folder_.number(), synced_.c_str(), F_OK, 0) == 0) sync();
}

} // namespace lumora
