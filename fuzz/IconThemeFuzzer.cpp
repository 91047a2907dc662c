// Whatever the index of a theme holds, an icon is found in the theme's own folder or not at all.

#include "Fuzzer.h"
#include "InputFile.h"

#include "applist/IconTheme.h"

#include <fstream>

using applist::IconTheme;
using fuzz::require;

namespace {

/// An installed theme "theme" with one icon.
struct Installed {
    Installed() {
        std::filesystem::create_directory(index.path().parent_path() / "48x48");
        require(static_cast<bool>(std::ofstream(icon) << "png"));
    }
    fuzz::InputFile index{"theme/index.theme"};
    std::filesystem::path icon = index.path().parent_path() / "48x48/clock.png";
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    static const Installed installed;
    installed.index.write(fuzz::textOf(bytes, size));
    IconTheme theme({installed.index.folder()}, {}, "theme");
    require(theme.refresh());
    require(!theme.refresh());
    require(theme.find("other", 48, 1).empty());
    for (const int pixels : {0, 29, 48, 4096}) {
        const auto found = theme.find("clock", pixels, 2);
        require(found.empty() || std::filesystem::equivalent(found, installed.icon));
        if (!found.empty() && pixels == 48) ++fuzz::taken;
    }
    return 0;
}
