#include "tools/lumoractl/Printable.h"

#include "platform/foundation/Unicode.h"

#include <array>
#include <cstdio>

namespace lumora {

std::string printable(std::string_view text) {
    std::string printed;
    while (!text.empty()) {
        const char32_t character = platform::takeCharacter(text);
        platform::appendCharacter(printed, platform::isVisible(character) ? character : platform::replacementCharacter);
    }
    return printed;
}

std::string printableJson(std::string_view json) {
    std::string printed;
    const auto escape = [&printed](std::uint16_t unit) {
        std::array<char, sizeof "\\uXXXX"> escaped{};
        std::snprintf(escaped.data(), escaped.size(), "\\u%04x", unsigned{unit});
        printed += escaped.data();
    };
    while (!json.empty()) {
        const char32_t character = platform::takeCharacter(json);
        if (character == '\n' || platform::isVisible(character))
            platform::appendCharacter(printed, character);
        else
            platform::forEachUnit(character, escape);
    }
    return printed;
}

} // namespace lumora
