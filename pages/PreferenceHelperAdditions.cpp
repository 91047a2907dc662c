#include "pages/PreferenceHelperAdditions.h"

#include "pages/base/PreferenceHelper.h"
#include "pages/base/RowIcon.h"

namespace lumora {

platform::PSSpecifierRef PreferenceHelperAdditions::addIcon(const platform::PSSpecifierRef& row,
                                                            const std::string& iconName) {
    setIcon(*row, iconName, *platform::NSBundle::bundleForClass(typeid(PreferenceHelper)));
    return row;
}

} // namespace lumora
