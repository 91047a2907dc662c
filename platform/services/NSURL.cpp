#include "platform/services/NSURL.h"

#include <glib.h>

#include <algorithm>
#include <cstring>
#include <memory>

namespace platform {

std::optional<NSURL> NSURL::URLWithString(const std::string& text) {
    // The parser is lenient about these.
    const auto isForbidden = [](unsigned char letter) {
        return letter <= ' ' || letter >= 0x7F || std::strchr("\"<>\\^`{|}", letter) != nullptr;
    };
    if (std::any_of(text.begin(), text.end(), isForbidden)) return std::nullopt;
    const std::unique_ptr<GUri, void (*)(GUri*)> uri(g_uri_parse(text.c_str(), G_URI_FLAGS_NONE, nullptr), g_uri_unref);
    if (!uri) return std::nullopt;
    return NSURL(text, g_uri_get_scheme(uri.get()));
}

} // namespace platform
