#pragma once

#include "platform/foundation/RegularFile.h"

#include <ft2build.h>
#include FT_FREETYPE_H

#include <algorithm>
#include <climits>
#include <cstdint>
#include <filesystem>

namespace platform {

/// A font's file for FreeType, which reads instead of mapping it, so that a file that is cut short meanwhile gives bad
/// glyphs at worst.
///
///     UIFontStream stream(font.file());
///     if (FT_Face face = stream.open(library, font.index())) …
///
/// The stream outlives the face. One thread, that of the library.
class UIFontStream {
  public:
    explicit UIFontStream(const std::filesystem::path& path) : file_(path) {
        stream_.size = static_cast<unsigned long>(std::min<std::uint64_t>(file_.size(), ULONG_MAX));
        stream_.descriptor.pointer = &file_;
        stream_.read = [](FT_Stream stream, unsigned long offset, unsigned char* into, unsigned long count) {
            const auto& file = *static_cast<const RegularFile*>(stream->descriptor.pointer);
            if (offset > stream->size) return count == 0 ? 1UL : 0UL; // for no bytes, the result is an error code
            count = std::min(count, stream->size - offset);
            return count > 0 && file.read(offset, into, count) ? count : 0UL;
        };
    }
    UIFontStream(const UIFontStream&) = delete;
    UIFontStream& operator=(const UIFontStream&) = delete;
    ~UIFontStream() = default;

    /// To be ended with FT_Done_Face(); null when the file is no readable font or has no face of that number.
    [[nodiscard]] FT_Face open(FT_Library library, int index) {
        FT_Open_Args from{};
        from.flags = FT_OPEN_STREAM;
        from.stream = &stream_;
        FT_Face face = nullptr;
        return file_ && FT_Open_Face(library, &from, index, &face) == 0 ? face : nullptr;
    }

  private:
    RegularFile file_;
    FT_StreamRec stream_{};
};

} // namespace platform
