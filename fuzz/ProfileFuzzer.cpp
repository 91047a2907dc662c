// Any text is a profile or is refused with a reason; what is taken of it has no passcode and no value that the tweak
// refuses, and is the same profile when it is written and read again.

#include "Fuzzer.h"

#include "profiles/Differences.h"
#include "profiles/ReadProfile.h"
#include "tweak/Defaults.h"

using fuzz::require;
using namespace profiles;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const auto read = readProfile(fuzz::textOf(bytes, size));
    require(read || !read.error().empty());
    if (!read) return 0;
    ++fuzz::taken;

    const ReadProfile& first = read.value();
    for (const auto& [key, value] : first.profile.settings) {
        const lumora::Setting* setting = lumora::findSetting(key);
        require(!lumora::isSecure(key) && !first.aside.contains(key));
        require(setting ? static_cast<bool>(canHave(*setting, value)) : !value.isNil());
    }
    for (const std::string& line : linesOf(first.remarks))
        require(!line.empty());

    const auto written = writeProfile(first.profile);
    require(written || size > kMostBytes / 16); // \uXXXX and line breaks take more than what is read
    if (!written) return 0;
    const auto again = readProfile(written.value());
    require(again && differences(first.profile.settings, again.value().profile.settings).empty());
    require(again.value().profile.name == first.profile.name && again.value().profile.omitted == first.profile.omitted);
    require(writeProfile(again.value().profile).value() == written.value());
    return 0;
}
