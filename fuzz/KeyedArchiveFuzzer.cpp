// Any bytes give a value or nothing; a value can be written, and reads as itself again.

#include "Fuzzer.h"

#include "platform/foundation/NSKeyedArchiver.h"

using fuzz::require;
using platform::Data;
using platform::NSKeyedArchiver;
using platform::NSKeyedUnarchiver;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    std::size_t visits = 0;
    const auto value = NSKeyedUnarchiver::unarchive(Data(bytes, bytes + size), &visits);
    require(visits <= 16 * size + 64);
    if (!value) return 0;
    ++fuzz::taken;
    require(!description(value.value()).empty() || value.value().text() != nullptr);

    const auto archive = NSKeyedArchiver::archivedDataWithRootObject(value.value());
    require(archive.has_value());
    const auto again = NSKeyedUnarchiver::unarchive(*archive);
    // Compared as bytes, which tell more apart than values do: the order of keys, one NaN from another.
    require(again && NSKeyedArchiver::archivedDataWithRootObject(again.value()) == archive);
    return 0;
}
