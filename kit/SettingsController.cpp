#include <lumora/SettingsController.h>

#include <string_view>

#if defined(__GLIBCXX__) && !defined(_GLIBCXX_DEBUG) && defined(__LP64__)
// A page that is compiled already has its own members right behind those of this class. When this fails, the class has
// another size than in that version of the kit: count LUMORA_KIT_VERSION up and write the new pair here. Count it up,
// too, when virtual functions or the order of members change: the size may stay, and then nothing fails.
static_assert(LUMORA_KIT_VERSION == 6 && sizeof(platform::PSListController) == 176);
#endif

namespace lumora {

bool kitIs(const char* tag) {
    return std::string_view(tag) == LUMORA_KIT_TAG;
}

} // namespace lumora
