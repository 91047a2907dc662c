// A folder is a bundle whatever its Info.plist holds: it answers each question, gives no file of another folder, and
// loads nothing that is no shared object.

#include "Fuzzer.h"
#include "InputFile.h"

#include "platform/foundation/NSBundle.h"

using fuzz::require;
using platform::NSBundle;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    static const fuzz::InputFile file("Info.plist");
    file.write(fuzz::textOf(bytes, size));
    const auto bundle = NSBundle::bundleWithPath(file.folder());
    require(bundle != nullptr);

    const auto loaded = bundle->load(); // there is nothing to load: the one file is no shared object
    require(!loaded && !loaded.error().empty());
    require(!bundle->unload());
    require(bundle->principalClassTable("") == nullptr);
    static_cast<void>(bundle->principalClass());

    if (!bundle->infoDictionary().empty()) ++fuzz::taken;
    for (const auto& [key, value] : bundle->infoDictionary()) {
        const std::string_view* text = value.text();
        const auto found = text ? bundle->pathForResource(*text, "") : bundle->pathForResource(key, "plist");
        require(found.empty() || found == file.path());
    }
    return 0;
}
