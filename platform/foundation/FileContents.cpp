#include "platform/foundation/FileContents.h"

#include "platform/foundation/RegularFile.h"
#include "platform/foundation/Unicode.h"

#include <new>

namespace platform {
namespace {

template<class Bytes>
std::optional<Bytes> contents(const std::filesystem::path& path) {
    const RegularFile file(path);
    if (!file || file.size() > kLargestFileContents) return std::nullopt;
    try {
        Bytes bytes(static_cast<std::size_t>(file.size()), {});
        if (file.read(0, bytes.data(), bytes.size())) return bytes;
    } catch (const std::bad_alloc&) { // the caller sees no such file
    }
    return std::nullopt;
}

} // namespace

std::optional<Data> dataWithContentsOfFile(const std::filesystem::path& path) {
    return contents<Data>(path);
}

std::optional<std::string> stringWithContentsOfFile(const std::filesystem::path& path) {
    auto text = contents<std::string>(path);
    return text && isUtf8(*text) ? text : std::nullopt;
}

} // namespace platform
