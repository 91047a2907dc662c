#pragma once

#include "platform/Export.h"
#include "platform/foundation/FileDescriptor.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>

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

    /// A copy of the bytes that a plain file has now, in a file without a name: nobody else can reach it, whatever
    /// becomes of the other, and it takes no memory. It stands in `$TMPDIR`, else in /var/tmp, which is for what may be
    /// large. Null when the file cannot be read, or where there is no room for it.
    [[nodiscard]] static std::shared_ptr<const RegularFile> copyOf(const std::filesystem::path& path);

    /// False when there is no plain file at the path, or none that may be read.
    explicit operator bool() const { return static_cast<bool>(file_); }
    [[nodiscard]] std::uint64_t size() const { return size_; }
    /// False when the file does not have so many bytes there.
    [[nodiscard]] bool read(std::uint64_t offset, void* into, std::size_t count) const;
    /// Appends to an open file as much as this one had when it was opened, or what is left of it by now, and tells how
    /// much that was. Nothing when either fails; errno says why.
    [[nodiscard]] std::optional<std::uint64_t> writeTo(const FileDescriptor& file) const;
    /// For whoever reads it by other means; open as long as this is there.
    [[nodiscard]] int descriptor() const { return file_.number(); }

  private:
    explicit RegularFile(FileDescriptor file) : file_(std::move(file)) {}

    FileDescriptor file_;
    std::uint64_t size_ = 0;
};

} // namespace platform
