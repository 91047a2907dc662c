#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <sys/stat.h>

namespace applist {

/// Tells two states of a file or folder apart.
struct FileStamp {
    std::uint64_t device = 0;
    std::uint64_t inode = 0;
    std::int64_t size = 0;
    std::int64_t seconds = 0;
    std::int64_t nanoseconds = 0;
    bool regular = false;
    friend bool operator==(const FileStamp&, const FileStamp&) = default;
};

/// The stamp of a file or folder; nothing if there is none. Any thread.
inline std::optional<FileStamp> stampOf(const std::filesystem::path& path) {
    struct stat state {};
    if (stat(path.c_str(), &state) != 0) return std::nullopt;
    return FileStamp{state.st_dev,         state.st_ino,          state.st_size,
                     state.st_mtim.tv_sec, state.st_mtim.tv_nsec, S_ISREG(state.st_mode)};
}

/// The stamp of a regular file of at most that many bytes; nothing for any other, since reading a pipe would never end
/// and no honest file is larger. Any thread.
inline std::optional<FileStamp> stampOfFile(const std::filesystem::path& path, std::int64_t largest) {
    const std::optional<FileStamp> stamp = stampOf(path);
    return stamp && stamp->regular && stamp->size <= largest ? stamp : std::nullopt;
}

} // namespace applist
