#include "platform/foundation/FileContents.h"

#include "platform/foundation/RegularFile.h"
#include "platform/foundation/Unicode.h"

namespace platform {
namespace {

template<class Bytes>
std::optional<Bytes> contents(const std::filesystem::path& path) {
    const RegularFile file(path);
    if (!file) return std::nullopt;
    Bytes bytes;
    bytes.resize(file.size());
    if (!file.read(0, bytes.data(), bytes.size())) return std::nullopt;
    return bytes;
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
