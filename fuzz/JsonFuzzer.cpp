// Any text is one value as JSON or is not; a value can be written in each layout, fit for a terminal, and each of these
// reads as the same value again.

#include "Fuzzer.h"

#include "platform/foundation/Unicode.h"
#include "json/Json.h"

using fuzz::require;
using lumora::JsonLayout;
using lumora::readJson;
using lumora::writeJson;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const auto value = readJson(fuzz::textOf(bytes, size));
    require(value || !value.error().empty());
    if (!value) return 0;
    ++fuzz::taken;

    const auto line = writeJson(value.value(), JsonLayout::line);
    const auto indented = writeJson(value.value());
    require(line && indented && platform::printable(line.value()) == line.value());
    for (const std::string& written : {line.value(), indented.value()}) {
        const auto again = readJson(written);
        require(again && writeJson(again.value(), JsonLayout::line).value() == line.value());
    }
    return 0;
}
