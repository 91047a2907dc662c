#include "Unicode.h"

#include <cstring>
#include <unicode/uchar.h>

namespace platform {

bool isAscii(const void* bytes, std::size_t size) {
    const auto* begin = static_cast<const unsigned char*>(bytes);
    const auto eightAt = [begin](std::size_t offset) {
        std::uint64_t eight = 0;
        std::memcpy(&eight, begin + offset, sizeof eight);
        return eight;
    };
    constexpr std::uint64_t upperBits = 0x8080808080808080U;
    std::uint64_t seen = 0;
    if (size < sizeof seen) {
        for (std::size_t i = 0; i < size; ++i)
            seen |= begin[i];
        return (seen & 0x80U) == 0;
    }
    // The last eight may overlap those before them.
    for (std::size_t i = 0; i + sizeof seen < size; i += sizeof seen)
        seen |= eightAt(i);
    return ((seen | eightAt(size - sizeof seen)) & upperBits) == 0;
}

char32_t takeCharacter(std::string_view& text) {
    const auto byte = [&text](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned char lead = byte(0);
    std::size_t length = 1;
    char32_t character = lead;
    char32_t smallest = 0;
    if (lead >= 0xF0 && lead <= 0xF4) {
        length = 4, character = lead & 0x07U, smallest = 0x10000;
    } else if (lead >= 0xE0 && lead < 0xF0) {
        length = 3, character = lead & 0x0FU, smallest = 0x800;
    } else if (lead >= 0xC2 && lead < 0xE0) {
        length = 2, character = lead & 0x1FU, smallest = 0x80;
    } else if (lead >= 0x80) {
        character = replacementCharacter;
    }
    bool wellFormed = length <= text.size();
    for (std::size_t i = 1; wellFormed && i < length; ++i) {
        wellFormed = (byte(i) & 0xC0U) == 0x80;
        character = (character << 6) | (byte(i) & 0x3FU);
    }
    const bool surrogate = character >= 0xD800 && character < 0xE000;
    if (!wellFormed || character < smallest || character > 0x10FFFF || surrogate) {
        text.remove_prefix(1);
        return replacementCharacter;
    }
    text.remove_prefix(length);
    return character;
}

bool isUtf8(std::string_view text) {
    if (isAscii(text.data(), text.size())) return true; // as most texts are
    while (!text.empty()) {
        const std::size_t before = text.size();
        // A byte that is none is taken alone; the replacement character itself has three.
        if (takeCharacter(text) == replacementCharacter && before - text.size() == 1) return false;
    }
    return true;
}

bool isVisible(char32_t character) {
    switch (u_charType(static_cast<UChar32>(character))) {
    case U_UNASSIGNED:
    case U_CONTROL_CHAR:
    case U_FORMAT_CHAR:
    case U_SURROGATE:
    case U_LINE_SEPARATOR:
    case U_PARAGRAPH_SEPARATOR:
        return false;
    default:
        return true;
    }
}

std::string printable(std::string_view text) {
    std::string printed;
    while (!text.empty()) {
        const char32_t character = takeCharacter(text);
        appendCharacter(printed, isVisible(character) ? character : replacementCharacter);
    }
    return printed;
}

void appendCharacter(std::string& text, char32_t character) {
    const auto append = [&text](char32_t byte) { text.push_back(static_cast<char>(byte)); };
    if (character < 0x80) {
        append(character);
    } else if (character < 0x800) {
        append(0xC0 | (character >> 6));
        append(0x80 | (character & 0x3F));
    } else if (character < 0x10000) {
        append(0xE0 | (character >> 12));
        append(0x80 | ((character >> 6) & 0x3F));
        append(0x80 | (character & 0x3F));
    } else {
        append(0xF0 | (character >> 18));
        append(0x80 | ((character >> 12) & 0x3F));
        append(0x80 | ((character >> 6) & 0x3F));
        append(0x80 | (character & 0x3F));
    }
}

std::string textFromUtf16(const std::uint8_t* units, std::size_t count) {
    const auto unit = [units](std::size_t i) { return (char32_t{units[2 * i]} << 8) | units[2 * i + 1]; };
    std::string text;
    text.reserve(2 * count);
    for (std::size_t i = 0; i < count; ++i) {
        const char32_t first = unit(i);
        const bool leads = first >= 0xD800 && first < 0xDC00;
        const char32_t second = leads && i + 1 < count ? unit(i + 1) : 0;
        if (second >= 0xDC00 && second < 0xE000) {
            appendCharacter(text, 0x10000 + ((first - 0xD800) << 10) + (second - 0xDC00));
            ++i;
        } else {
            appendCharacter(text, first >= 0xD800 && first < 0xE000 ? replacementCharacter : first);
        }
    }
    return text;
}

std::size_t utf16Length(std::string_view text) {
    std::size_t length = 0;
    while (!text.empty())
        length += takeCharacter(text) < 0x10000 ? 1U : 2U;
    return length;
}

std::uint8_t* writeUtf16(std::string_view text, std::uint8_t* into) {
    const auto write = [&into](std::uint16_t unit) {
        *into++ = static_cast<std::uint8_t>(unit >> 8);
        *into++ = static_cast<std::uint8_t>(unit & 0xFF);
    };
    while (!text.empty())
        forEachUnit(takeCharacter(text), write);
    return into;
}

} // namespace platform
