#include "platform/ui/PictureSize.h"

#include <algorithm>
#include <array>

namespace platform {
namespace {

unsigned bigEndian(std::span<const std::uint8_t> bytes, std::size_t at, unsigned count) {
    unsigned number = 0;
    for (unsigned i = 0; i < count; ++i)
        number = number << 8 | bytes[at + i];
    return number;
}

/// Walks the segments of a JPEG to its frame header.
std::optional<CGSize> sizeOfJpeg(std::span<const std::uint8_t> bytes) {
    if (bytes.size() < 4 || bytes[0] != 0xFF || bytes[1] != 0xD8) return std::nullopt;
    for (std::size_t at = 2; at + 9 <= bytes.size() && bytes[at] == 0xFF;) {
        const unsigned marker = bytes[at + 1];
        const bool tables = marker == 0xC4 || marker == 0xC8 || marker == 0xCC;
        if (marker >= 0xC0 && marker <= 0xCF && !tables)
            return CGSize{double(bigEndian(bytes, at + 7, 2)), double(bigEndian(bytes, at + 5, 2))};
        at += 2 + bigEndian(bytes, at + 2, 2);
    }
    return std::nullopt;
}

} // namespace

std::optional<CGSize> pngSize(std::span<const std::uint8_t> bytes) {
    static constexpr std::array<std::uint8_t, 8> signature{0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};
    constexpr std::size_t widthAt = 16; // signature, then length and name of the header chunk
    if (bytes.size() < widthAt + 8 || !std::equal(signature.begin(), signature.end(), bytes.begin()))
        return std::nullopt;
    return CGSize{double(bigEndian(bytes, widthAt, 4)), double(bigEndian(bytes, widthAt + 4, 4))};
}

std::optional<CGSize> pictureSize(std::span<const std::uint8_t> bytes) {
    if (auto png = pngSize(bytes)) return png;
    return sizeOfJpeg(bytes);
}

} // namespace platform
