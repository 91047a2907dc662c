#include "pages/base/RowIcon.h"

#include "platform/ui/UIImage.h"

namespace lumora {

void setIcon(platform::PSSpecifier& row, const std::string& iconName, const platform::NSBundle& bundle) {
    const std::filesystem::path name(iconName);
    const std::string extension = name.extension().string();
    const std::string type = extension.size() > 1 ? extension.substr(1) : "png";
    const std::string base = (name.parent_path() / name.stem()).string();
    row.setProperty(platform::UIImage::imageWithContentsOfFile(bundle.pathForResource(base, type)), "iconImage");
}

} // namespace lumora
