#pragma once

#include "platform/foundation/Value.h"
#include "platform/ui/CGGeometry.h"

#include <filesystem>
#include <memory>

namespace platform {

class UIImage;
using UIImageRef = std::shared_ptr<const UIImage>;

/// A picture, kept as the file's own bytes, which the window decodes. Immutable; any thread.
class PLATFORM_EXPORT UIImage {
  public:
    /// Null when the file is missing or is neither PNG nor JPEG. A file "name@2x.png" beside "name.png" becomes the
    /// same picture at twice the resolution.
    [[nodiscard]] static UIImageRef imageWithContentsOfFile(const std::filesystem::path& path);

    /// In points, as many as the single-resolution file has pixels.
    [[nodiscard]] CGSize size() const { return size_; }
    /// The encoded file for a screen with so many pixels a point; beyond 1, that of twice the resolution if there is
    /// one.
    [[nodiscard]] const Data& encoded(double scale) const { return scale > 1 && !twice_.empty() ? twice_ : once_; }

    UIImage(CGSize size, Data once, Data twice) : size_(size), once_(std::move(once)), twice_(std::move(twice)) {}

  private:
    CGSize size_;
    Data once_;
    Data twice_;
};

} // namespace platform
