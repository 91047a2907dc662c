#include "Unicode.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstring>
#include <unicode/normalizer2.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>
#include <unicode/utf16.h>
#include <unicode/utf8.h>

namespace platform {
namespace {

/// Calls back with each UTF-16 unit of a character, one or two.
template<class Callback>
void forEachUnit(char32_t character, Callback callback) {
    if (character < 0x10000) {
        callback(static_cast<std::uint16_t>(character));
    } else {
        callback(static_cast<std::uint16_t>(U16_LEAD(character)));
        callback(static_cast<std::uint16_t>(U16_TRAIL(character)));
    }
}

} // namespace

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

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wconversion" // in ICU's macro
char32_t takeCharacter(std::string_view& text) {
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(text.data());
    const auto length = static_cast<std::int32_t>(std::min<std::size_t>(text.size(), U8_MAX_LENGTH));
    std::int32_t taken = 0;
    UChar32 character = 0;
    U8_NEXT(bytes, taken, length, character);
    text.remove_prefix(character < 0 ? 1 : static_cast<std::size_t>(taken));
    return character < 0 ? replacementCharacter : static_cast<char32_t>(character);
}
#pragma GCC diagnostic pop

bool isUtf8(std::string_view text) {
    if (isAscii(text.data(), text.size())) return true; // as most texts are
    while (!text.empty()) {
        const std::size_t before = text.size();
        // A byte that is not UTF-8 is taken by itself; the replacement character proper has three bytes.
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

std::string folded(std::string_view text) {
    UErrorCode status = U_ZERO_ERROR;
    const icu::Normalizer2* withoutCase = icu::Normalizer2::getNFKCCasefoldInstance(status);
    const icu::Normalizer2* takenApart = icu::Normalizer2::getNFDInstance(status);
    if (U_FAILURE(status)) return std::string(text); // ICU came without its data
    const auto characters = takenApart->normalize(
        withoutCase->normalize(icu::UnicodeString::fromUTF8(icu::StringPiece(text)), status), status);
    std::string left;
    for (int32_t i = 0; i < characters.length(); i = characters.moveIndex32(i, 1)) {
        const UChar32 character = characters.char32At(i);
        if (u_charType(character) != U_NON_SPACING_MARK) appendCharacter(left, static_cast<char32_t>(character));
    }
    return left;
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
    std::array<std::uint8_t, U8_MAX_LENGTH> bytes{};
    std::size_t length = 0;
    U8_APPEND_UNSAFE(bytes, length, character);
    text.append(bytes.data(), bytes.data() + length);
}

void appendEscaped(std::string& text, char32_t character, char mark) {
    forEachUnit(character, [&](std::uint16_t unit) {
        std::array<char, sizeof "\\uXXXX"> escaped{};
        std::snprintf(escaped.data(), escaped.size(), "\\%c%04x", mark, unsigned{unit});
        text += escaped.data();
    });
}

std::string textFromUtf16(const std::uint8_t* units, std::size_t count) {
    const auto unit = [units](std::size_t i) { return (char32_t{units[2 * i]} << 8) | units[2 * i + 1]; };
    std::string text;
    text.reserve(2 * count);
    for (std::size_t i = 0; i < count; ++i) {
        const char32_t first = unit(i);
        const char32_t second = U16_IS_LEAD(first) && i + 1 < count ? unit(i + 1) : 0;
        if (U16_IS_TRAIL(second)) {
            appendCharacter(text, 0x10000 + ((first - 0xD800) << 10) + (second - 0xDC00));
            ++i;
        } else {
            appendCharacter(text, U16_IS_SURROGATE(first) ? replacementCharacter : first);
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
