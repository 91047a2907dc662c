#pragma once

#include "platform/foundation/FileDescriptor.h"

#include <filesystem>

namespace search {

/// A temporary folder of this process alone, for what it and those that it starts leave behind, however they end. It
/// goes with the object; where the process is ended before that, the next one to make such a folder removes it. One
/// thread at a time.
class PrivateFolder {
  public:
    /// Empty until one is made.
    PrivateFolder() = default;
    PrivateFolder(const PrivateFolder&) = delete;
    PrivateFolder& operator=(const PrivateFolder&) = delete;
    ~PrivateFolder() { remove(); }

    /// Makes one in that folder. False when that fails.
    bool makeIn(const std::filesystem::path& parent);
    /// Silent about what cannot be removed: it is left to the next one.
    void remove();
    /// Empty for none.
    [[nodiscard]] const std::filesystem::path& path() const { return path_; }

  private:
    std::filesystem::path path_;
    platform::FileDescriptor lock_; ///< tells the others that the folder is in use
};

} // namespace search
