#include <lumora/SettingsController.h>

#include <string_view>

#if defined(__GLIBCXX__) && !defined(_GLIBCXX_DEBUG) && defined(__LP64__)
// A page that is compiled already has its own members right behind those of this class. When this fails, the class has
// another size than in that version of the kit: count LUMORA_KIT_VERSION up and write the new pair here. A class of the
// same size may have changed as well, in its virtual functions or its members' order: that counts, and nothing notices.
static_assert(LUMORA_KIT_VERSION == 5 && sizeof(platform::PSListController) == 176);
#endif

namespace lumora {

bool kitIs(const char* tag) {
    return std::string_view(tag) == LUMORA_KIT_TAG;
}

} // namespace lumora
