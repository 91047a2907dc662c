// Any bytes, in binary or XML form, give a value or nothing; a value can be written, and reads as itself again.

#include "platform/foundation/PropertyList.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

using platform::Data;
using platform::readPropertyList;
using platform::writePropertyList;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    std::size_t visits = 0;
    const auto value = readPropertyList(Data(bytes, bytes + size), &visits);
    if (visits > 16 * size + 64) std::abort();
    if (!value) return 0;

    const auto written = writePropertyList(value.value());
    if (!written) std::abort();
    const auto again = readPropertyList(written.value());
    if (!again || writePropertyList(again.value()).value() != written.value()) std::abort();
    return 0;
}
