#pragma once

#include "platform/foundation/RegularFile.h"

#include <fstream>
#include <memory>
#include <string>

namespace tests {

/// Bytes as a message takes them along. They pass through a file of that name, which is gone afterwards.
inline std::shared_ptr<const platform::RegularFile> mailedFile(const std::filesystem::path& through,
                                                               const std::string& bytes) {
    std::ofstream(through, std::ios::binary) << bytes;
    auto copy = platform::RegularFile::copyOf(through);
    std::filesystem::remove(through);
    return copy;
}

} // namespace tests
