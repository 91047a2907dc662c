#include "json/Base64.h"

using platform::Data;

namespace lumora {
namespace {

constexpr std::string_view kAlphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

} // namespace

std::string encodeBase64(const Data& data) {
    std::string text;
    text.reserve((data.size() + 2) / 3 * 4);
    for (std::size_t at = 0; at < data.size(); at += 3) {
        const std::size_t bytes = std::min<std::size_t>(3, data.size() - at);
        std::uint32_t group = 0;
        for (std::size_t i = 0; i < 3; ++i)
            group = group << 8 | (i < bytes ? data[at + i] : 0U);
        for (std::size_t i = 0; i < 4; ++i)
            text += i <= bytes ? kAlphabet[group >> (18 - 6 * i) & 63U] : '=';
    }
    return text;
}

std::optional<Data> decodeBase64(std::string_view text) {
    if (text.size() % 4 != 0) return std::nullopt;
    std::string_view digits = text;
    while (digits.ends_with('=') && text.size() - digits.size() < 2)
        digits.remove_suffix(1);

    Data data;
    data.reserve(text.size() / 4 * 3);
    std::uint32_t bits = 0;
    unsigned held = 0;
    for (const char digit : digits) {
        const std::size_t value = kAlphabet.find(digit);
        if (value == std::string_view::npos) return std::nullopt;
        bits = bits << 6 | static_cast<std::uint32_t>(value);
        held += 6;
        if (held >= 8) {
            held -= 8;
            data.push_back(static_cast<std::uint8_t>(bits >> held));
            bits &= (1U << held) - 1;
        }
    }
    // Bits left over must be none or zero, or two texts would stand for the same data.
    return bits == 0 ? std::optional(std::move(data)) : std::nullopt;
}

} // namespace lumora
