// A file that is shown as text, such as the change log, is read exactly or not at all. What goes to a terminal can be
// shown whatever it was.

#include "Fuzzer.h"
#include "InputFile.h"

#include "platform/foundation/FileContents.h"
#include "platform/foundation/Unicode.h"

#include <glib.h>

using fuzz::require;

namespace {

/// What another reader of UTF-8 says. It takes no zero byte for text; we do.
bool isTextToGLib(std::string text) {
    for (char& letter : text)
        if (letter == '\0') letter = ' ';
    return g_utf8_validate_len(text.data(), text.size(), nullptr) != FALSE;
}

bool isVisible(std::string_view text) {
    while (!text.empty())
        if (!platform::isVisible(platform::takeCharacter(text))) return false;
    return true;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    static const fuzz::InputFile file("changelog.txt");
    const std::string input(fuzz::textOf(bytes, size));
    file.write(input);
    const auto text = platform::stringWithContentsOfFile(file.path());
    require(text.has_value() == isTextToGLib(input));
    require(!text || *text == input);
    if (text && !text->empty()) ++fuzz::taken;

    const std::string printed = platform::printable(input);
    require(platform::isUtf8(printed) && isVisible(printed) && platform::printable(printed) == printed);
    return 0;
}
