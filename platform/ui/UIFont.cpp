#include "platform/ui/UIFont.h"

#include <utility>

namespace platform {

UIFont::UIFont(std::string name, double size, std::filesystem::path file, int index)
    : name_(std::move(name)), size_(size), file_(std::move(file)), index_(index) {
}

std::vector<std::string> UIFont::familyNames() {
    return {};
}

std::vector<std::string> UIFont::fontNamesForFamilyName(const std::string& /*family*/) {
    return {};
}

UIFontRef UIFont::fontWithName(const std::string& /*name*/, double /*size*/) {
    return nullptr;
}

UIFontRef UIFont::systemFontOfSize(double size) {
    return std::make_shared<const UIFont>(std::string(), size, std::filesystem::path(), 0);
}

} // namespace platform
