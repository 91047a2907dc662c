#include <lumora/SettingsController.h>

#include <string_view>

namespace lumora {

bool kitIs(const char* tag) {
    return std::string_view(tag) == LUMORA_KIT_TAG;
}

} // namespace lumora
