#include "decoder/Picture.h"

#include "platform/desktop/Owned.h"
#include "platform/foundation/FileDescriptor.h"
#include "platform/services/PictureFrames.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <gdk-pixbuf/gdk-pixbuf.h>
#include <string>
#include <string_view>

namespace decoder {

using platform::Owned;

namespace {

/// A usual kind of picture.
struct Kind {
    const char* name;           ///< as gdk-pixbuf calls it
    std::string_view beginning; ///< of its files
    std::string_view ending;    ///< somewhere in them, unless they were cut short, which not every decoder reports
    bool drawing;               ///< drawn at the size wanted; others are decoded at their own and then scaled
};

constexpr std::array<Kind, 5> kKinds{{{"png", "\x89PNG", "IEND", false},
                                      {"svg", "<", ">", true},
                                      {"svg", "\xEF\xBB\xBF<", ">", true},
                                      {"xpm", "/* XPM", "}", false},
                                      {"jpeg", "\xFF\xD8\xFF", "\xFF\xD9", false}}};

struct Fit {
    int pixels;
    bool drawing;
};

/// Makes the picture as large as its square allows. No size fails the decoding, before it takes any memory.
void fit(GdkPixbufLoader* loader, int width, int height, gpointer data) {
    const Fit& wanted = *static_cast<const Fit*>(data);
    constexpr int largest = 4096;
    if (!wanted.drawing && (width > largest || height > largest)) return gdk_pixbuf_loader_set_size(loader, 0, 0);
    const double scale = double(wanted.pixels) / std::max({width, height, 1});
    const auto scaled = [&](int side) { return std::clamp(int(std::lround(side * scale)), 1, wanted.pixels); };
    gdk_pixbuf_loader_set_size(loader, scaled(width), scaled(height));
}

/// All of a regular file of sensible size; empty for anything else. A pipe does not hold it up.
std::string contentsOf(const std::filesystem::path& path) {
    std::string contents;
    const platform::FileDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    struct stat state {};
    if (file && ::fstat(file.number(), &state) == 0 && S_ISREG(state.st_mode) &&
        state.st_size <= platform::kLargestPictureFile) {
        contents.resize(std::size_t(state.st_size));
        contents.resize(std::size_t(std::max<ssize_t>(::read(file.number(), contents.data(), contents.size()), 0)));
    }
    return contents;
}

Owned<GdkPixbuf> decode(const std::filesystem::path& file, int pixels) {
    const std::string contents = contentsOf(file);
    std::string_view bytes = contents;
    bytes.remove_prefix(std::min(bytes.find_first_not_of(" \t\r\n"), bytes.size()));
    // Found here, since gdk-pixbuf's own guess depends on the desktop's database of file types.
    const auto* kind = std::find_if(kKinds.begin(), kKinds.end(), [&](const Kind& usual) {
        return bytes.starts_with(usual.beginning) && bytes.find(usual.ending) != std::string_view::npos;
    });
    if (kind == kKinds.end()) return nullptr;
    const Owned<GdkPixbufLoader> loader(gdk_pixbuf_loader_new_with_type(kind->name, nullptr));
    if (!loader) return nullptr;
    Fit wanted{pixels, kind->drawing};
    g_signal_connect(loader.get(), "size-prepared", G_CALLBACK(fit), &wanted);
    const auto* data = reinterpret_cast<const guchar*>(bytes.data());
    const bool written = gdk_pixbuf_loader_write(loader.get(), data, bytes.size(), nullptr);
    const bool closed = gdk_pixbuf_loader_close(loader.get(), nullptr); // in any case
    GdkPixbuf* picture = written && closed ? gdk_pixbuf_loader_get_pixbuf(loader.get()) : nullptr;
    return Owned<GdkPixbuf>(picture ? GDK_PIXBUF(g_object_ref(picture)) : nullptr);
}

Owned<GdkPixbuf> centred(const GdkPixbuf* picture, int pixels) {
    Owned<GdkPixbuf> plate(gdk_pixbuf_new(GDK_COLORSPACE_RGB, TRUE, 8, pixels, pixels));
    const Owned<GdkPixbuf> withAlpha(gdk_pixbuf_add_alpha(picture, FALSE, 0, 0, 0));
    if (!plate || !withAlpha) return nullptr;
    gdk_pixbuf_fill(plate.get(), 0);
    const int width = gdk_pixbuf_get_width(picture);
    const int height = gdk_pixbuf_get_height(picture);
    gdk_pixbuf_copy_area(withAlpha.get(), 0, 0, width, height, plate.get(), (pixels - width) / 2,
                         (pixels - height) / 2);
    return plate;
}

} // namespace

std::vector<std::uint8_t> drawPicture(const std::filesystem::path& file, int pixels) {
    Owned<GdkPixbuf> picture = decode(file, pixels);
    if (!picture || gdk_pixbuf_get_width(picture.get()) > pixels || gdk_pixbuf_get_height(picture.get()) > pixels)
        return {};
    if (gdk_pixbuf_get_width(picture.get()) < pixels || gdk_pixbuf_get_height(picture.get()) < pixels)
        picture = centred(picture.get(), pixels);
    char* bytes = nullptr;
    gsize length = 0;
    if (!picture || !gdk_pixbuf_save_to_buffer(picture.get(), &bytes, &length, "png", nullptr, nullptr)) return {};
    std::vector<std::uint8_t> png(bytes, bytes + length);
    g_free(bytes);
    return png;
}

} // namespace decoder
