// Any bytes give a value or nothing; a value can be written, and reads as itself again.

#include "platform/foundation/NSKeyedArchiver.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

using platform::Data;
using platform::NSKeyedArchiver;
using platform::NSKeyedUnarchiver;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    std::size_t visits = 0;
    const auto value = NSKeyedUnarchiver::unarchive(Data(bytes, bytes + size), &visits);
    if (visits > 16 * size + 64) std::abort();
    if (!value) return 0;
    if (description(value.value()).empty() && value.value().text() == nullptr) std::abort();

    const auto archive = NSKeyedArchiver::archivedDataWithRootObject(value.value());
    if (!archive) std::abort();
    const auto again = NSKeyedUnarchiver::unarchive(*archive);
    // Compared as bytes, which tell more apart than values do: the order of keys, one NaN from another.
    if (!again || NSKeyedArchiver::archivedDataWithRootObject(again.value()) != archive) std::abort();
    return 0;
}
