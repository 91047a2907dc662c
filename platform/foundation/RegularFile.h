#pragma once

#include "platform/Export.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>

namespace platform {

/// A plain file, open for reading at any place. What only stands where a file should be is refused without waiting for
/// it: a pipe would block and a device might never end.
///
///     const RegularFile file(folder / "Info.plist");
///     if (file) file.read(0, &header, sizeof header);
///
/// Any thread.
class PLATFORM_EXPORT RegularFile {
  public:
    explicit RegularFile(const std::filesystem::path& path);
    RegularFile(const RegularFile&) = delete;
    RegularFile& operator=(const RegularFile&) = delete;
    ~RegularFile();

    /// False when there is no plain file at the path, or none that may be read.
    explicit operator bool() const { return number_ >= 0; }
    [[nodiscard]] std::uint64_t size() const { return size_; }
    /// False when the file does not have so many bytes there.
    [[nodiscard]] bool read(std::uint64_t offset, void* into, std::size_t count) const;

  private:
    int number_ = -1;
    std::uint64_t size_ = 0;
};

} // namespace platform
