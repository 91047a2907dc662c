#include "platform/foundation/Base64.h"

#include <glib.h>

namespace platform {

std::string base64(const Data& data) {
    const std::unique_ptr<char, void (*)(void*)> text(g_base64_encode(data.data(), data.size()), g_free);
    return text.get();
}

std::optional<Data> dataFromBase64(std::string_view text) {
    constexpr std::string_view alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    Data data;
    data.reserve(text.size() / 4 * 3);
    unsigned bits = 0;
    std::uint32_t pending = 0;
    bool ended = false;
    for (const char character : text) {
        const std::size_t digit = alphabet.find(character);
        if (character == '=') {
            ended = true;
        } else if (digit != std::string_view::npos && !ended) {
            pending = (pending << 6) | static_cast<std::uint32_t>(digit);
            bits += 6;
            if (bits >= 8) {
                bits -= 8;
                data.push_back(static_cast<std::uint8_t>(pending >> bits));
            }
        } else if (std::string_view(" \t\r\n").find(character) == std::string_view::npos) {
            return std::nullopt;
        }
    }
    return data;
}

} // namespace platform
