// Any desktop entry is that of an application with a name, or of none. What was read and has not changed is not read
// again.

#include "Fuzzer.h"
#include "InputFile.h"

#include "applist/DesktopEntries.h"

using applist::DesktopEntries;
using fuzz::require;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    static const fuzz::InputFile file("org.example.Clock.desktop");
    file.write(fuzz::textOf(bytes, size));
    DesktopEntries entries({file.folder()});
    const bool isApplication = entries.refresh();
    require(entries.filesRead() == 1);

    const auto shown = entries.shown();
    const auto* entry = entries.find("org.example.Clock");
    require(shown.size() == (entry ? 1U : 0U));
    if (entry) {
        ++fuzz::taken;
        require(isApplication && entry->readable && entry->file == file.path());
        require(!entry->name.empty() && g_utf8_validate(entry->name.c_str(), -1, nullptr));
        require(shown.front() == std::pair(std::string("org.example.Clock"), entry->name));
    }
    require(!entries.refresh());
    require(entries.filesRead() == (isApplication ? 1 : 2));
    return 0;
}
