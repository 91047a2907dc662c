// Any bytes, in binary or XML form, give a value or nothing; a value can be written, and reads as itself again.

#include "Fuzzer.h"

#include "platform/foundation/PropertyList.h"

using fuzz::require;
using platform::Data;
using platform::readPropertyList;
using platform::writePropertyList;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    std::size_t visits = 0;
    const auto value = readPropertyList(Data(bytes, bytes + size), &visits);
    require(visits <= 16 * size + 64);
    if (!value) return 0;
    ++fuzz::taken;

    const auto written = writePropertyList(value.value());
    require(static_cast<bool>(written));
    const auto again = readPropertyList(written.value());
    require(again && writePropertyList(again.value()).value() == written.value());
    return 0;
}
