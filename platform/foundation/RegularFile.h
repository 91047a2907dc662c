#pragma once

#include "platform/Export.h"
#include "platform/foundation/FileDescriptor.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>

namespace platform {

/// A plain file, open for reading at any place. Anything else at the path is refused at once: a pipe would block, and a
/// device might never end.
///
///     const RegularFile file(folder / "Info.plist");
///     if (file) file.read(0, &header, sizeof header);
///
/// Any thread.
class PLATFORM_EXPORT RegularFile {
  public:
    explicit RegularFile(const std::filesystem::path& path);

    /// A copy of the bytes that a plain file has now, in a file without a name, which no other process can change and
    /// which takes no memory. It stands in `$TMPDIR`, else in /var/tmp, which is meant for large files. Null when the
    /// file cannot be read, or when there is no room for the copy.
    [[nodiscard]] static std::shared_ptr<const RegularFile> copyOf(const std::filesystem::path& path);

    /// False when there is no plain file at the path, or it may not be read.
    explicit operator bool() const { return static_cast<bool>(file_); }
    [[nodiscard]] std::uint64_t size() const { return size_; }
    /// False when the file does not have so many bytes there.
    [[nodiscard]] bool read(std::uint64_t offset, void* into, std::size_t count) const;
    /// Appends to an open file as many bytes as this one had when it was opened, or what is left of them, and tells how
    /// many. Nothing when reading or writing fails; errno says why.
    [[nodiscard]] std::optional<std::uint64_t> writeTo(const FileDescriptor& file) const;
    /// For libraries that read the file by themselves; open as long as this object lives.
    [[nodiscard]] int descriptor() const { return file_.number(); }

  private:
    explicit RegularFile(FileDescriptor file) : file_(std::move(file)) {}

    FileDescriptor file_;
    std::uint64_t size_ = 0;
};

} // namespace platform
