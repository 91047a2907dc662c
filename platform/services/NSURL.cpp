#include "platform/services/NSURL.h"

#include <glib.h>

#include <algorithm>
#include <cstring>
#include <memory>

namespace platform {

std::optional<NSURL> NSURL::URLWithString(const std::string& text) {
    // The check that follows is lenient about these.
    const auto isForbidden = [](unsigned char letter) {
        return letter <= ' ' || letter >= 0x7F || std::strchr("\"<>\\^`{|}", letter) != nullptr;
    };
    if (std::any_of(text.begin(), text.end(), isForbidden)) return std::nullopt;
    if (!g_uri_is_valid(text.c_str(), G_URI_FLAGS_NONE, nullptr)) return std::nullopt;
    const std::unique_ptr<char, void (*)(void*)> scheme(g_uri_parse_scheme(text.c_str()), g_free);
    if (!scheme) return std::nullopt;
    const std::unique_ptr<char, void (*)(void*)> small(g_ascii_strdown(scheme.get(), -1), g_free);
    return NSURL(text, small.get());
}

} // namespace platform
