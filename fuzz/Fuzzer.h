#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

/// What every fuzzer here defines: it reads any bytes, and never fails but by require().
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size);

namespace fuzz {

/// How many inputs were taken for what the decoder is there to read. The tests, which replay the seeds, want some of
/// them to be taken and others not.
inline int taken = 0;

/// Ends the process unless a promise was kept.
inline void require(bool kept) {
    if (!kept) std::abort();
}

/// What a fuzzer is given, as text.
inline std::string_view textOf(const std::uint8_t* bytes, std::size_t size) {
    return {reinterpret_cast<const char*>(bytes), size};
}

} // namespace fuzz
