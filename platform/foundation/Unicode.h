#pragma once

#include "platform/Export.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace platform {

/// Takes the place of what is no character: a byte that is not UTF-8, or half a surrogate pair. All functions here: any
/// thread.
inline constexpr char32_t replacementCharacter = 0xFFFD;

[[nodiscard]] bool isAscii(const void* bytes, std::size_t size);

/// Takes the next character off the front of a text, which must not be empty. A byte that begins no well-formed UTF-8
/// sequence is taken by itself and gives the replacement character.
[[nodiscard]] PLATFORM_EXPORT char32_t takeCharacter(std::string_view& text);

/// True when every byte belongs to a well-formed UTF-8 sequence.
[[nodiscard]] PLATFORM_EXPORT bool isUtf8(std::string_view text);

/// True for a character that stands for itself, a space too. False for one that steers how text is shown: control
/// characters, format characters (writing direction, zero width), separators of lines and paragraphs; and for an
/// unassigned one.
[[nodiscard]] PLATFORM_EXPORT bool isVisible(char32_t character);

/// A stranger's text for a terminal or a log: stays on its line, leaves the cursor and the writing direction of the
/// text around it alone. U+FFFD replaces every character that isVisible() refuses.
///
///     printable("Clock\x1B[2J");   // "Clock\uFFFD[2J"
[[nodiscard]] PLATFORM_EXPORT std::string printable(std::string_view text);

/// What is left of a text for whoever looks for it: the same whatever the case and the accents of its letters.
///
///     folded("Éclair") == folded("ECLAIR");
[[nodiscard]] PLATFORM_EXPORT std::string folded(std::string_view text);

/// Appends one character as UTF-8.
PLATFORM_EXPORT void appendCharacter(std::string& text, char32_t character);

/// Appends the UTF-16 units of one character in hexadecimal, each after a backslash and the mark: "\u202e".
PLATFORM_EXPORT void appendEscaped(std::string& text, char32_t character, char mark);

/// Text from UTF-16, the upper byte of each unit first. A surrogate without its other half becomes the replacement
/// character: half an emoji is no reason to lose all of the settings around it.
[[nodiscard]] std::string textFromUtf16(const std::uint8_t* units, std::size_t count);
[[nodiscard]] std::size_t utf16Length(std::string_view text);
/// Writes utf16Length(text) units, the upper byte of each first, and returns their end.
std::uint8_t* writeUtf16(std::string_view text, std::uint8_t* into);

} // namespace platform
