#include "tweak/Log.h"

#include "json/Json.h"

namespace lumora {

std::string inQuotes(std::string_view text) {
    constexpr std::size_t longest = 80;
    std::string shown(text.substr(0, longest));
    if (text.size() > longest) {
        // Back to the beginning of a character.
        while (!shown.empty() && (static_cast<unsigned char>(text[shown.size()]) & 0xC0U) == 0x80U)
            shown.pop_back();
        shown += "…";
    }
    const auto json = writeJson(shown, JsonLayout::line);
    return json ? json.value() : "\"…\"";
}

} // namespace lumora
