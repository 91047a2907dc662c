#include "platform/ui/UIImage.h"

#include "platform/foundation/FileContents.h"
#include "platform/ui/PictureSize.h"

#include <optional>
#include <utility>

namespace platform {

UIImageRef UIImage::imageWithContentsOfFile(const std::filesystem::path& path) {
    if (path.empty()) return nullptr;
    Data once = dataWithContentsOfFile(path).value_or(Data());
    const std::optional<CGSize> size = pictureSize(once);
    if (!size) return nullptr;
    std::filesystem::path twicePath = path;
    twicePath.replace_filename(path.stem().string() + "@2x" + path.extension().string());
    Data twice = dataWithContentsOfFile(twicePath).value_or(Data());
    if (!pictureSize(twice)) twice.clear();
    return std::make_shared<const UIImage>(*size, std::move(once), std::move(twice));
}

} // namespace platform
