#include "tests/applist/Desktop.h"

#include "applist/GLibPointer.h"
#include "tests/support/TestName.h"

#include <cstdlib>
#include <fstream>
#include <gdk-pixbuf/gdk-pixbuf.h>
#include <stdexcept>

namespace tests {
namespace {

namespace fs = std::filesystem;

class DesktopEnvironment : public testing::Environment {
  public:
    void SetUp() override {
        const fs::path& folder = Desktop::folder();
        setenv("HOME", (folder / "home").c_str(), 1);
        setenv("XDG_DATA_HOME", Desktop::userData().c_str(), 1);
        setenv("XDG_DATA_DIRS", Desktop::systemData().c_str(), 1);
        setenv("XDG_CONFIG_HOME", Desktop::config().c_str(), 1);
        setenv("XDG_CONFIG_DIRS", (folder / "system-config").c_str(), 1);
        setenv("XDG_CACHE_HOME", (folder / "cache").c_str(), 1);
        setenv("XDG_CURRENT_DESKTOP", "Test", 1);
        setenv("GSETTINGS_BACKEND", "memory", 1);
        setenv("GIO_USE_VFS", "local", 1);
        setenv("LANG", "de_DE.UTF-8", 1);
        for (const char* variable : {"LC_ALL", "LC_MESSAGES", "LANGUAGE", "GSETTINGS_SCHEMA_DIR"})
            unsetenv(variable);
        write(Desktop::config() / "gtk-3.0/settings.ini", "[Settings]\ngtk-icon-theme-name=desktop-theme\n");
    }
    void TearDown() override { fs::remove_all(Desktop::folder()); }
};

[[maybe_unused]] const testing::Environment* const environment =
    testing::AddGlobalTestEnvironment(new DesktopEnvironment);

} // namespace

const fs::path& Desktop::folder() {
    static const fs::path made = [] {
        std::string name = testing::TempDir() + "applist-desktop-XXXXXX";
        if (!mkdtemp(name.data())) throw std::runtime_error("no folder for the desktop");
        return name;
    }();
    return made;
}

void write(const fs::path& file, const std::string& contents) {
    fs::create_directories(file.parent_path());
    std::ofstream(file, std::ios::binary) << contents;
}

std::string entryNamed(const std::string& name, const std::string& more) {
    return "[Desktop Entry]\nType=Application\nName=" + name + "\nExec=true\n" + more;
}

std::string svg(int width, int height, const std::string& colour) {
    const std::string size = "width=\"" + std::to_string(width) + "\" height=\"" + std::to_string(height) + "\"";
    return "<svg xmlns=\"http://www.w3.org/2000/svg\" " + size + "><rect " + size + " fill=\"" + colour + "\"/></svg>";
}

std::string png(int width, int height, std::uint32_t redGreenBlueAlpha) {
    const applist::GObjectPointer<GdkPixbuf> picture(gdk_pixbuf_new(GDK_COLORSPACE_RGB, TRUE, 8, width, height));
    gdk_pixbuf_fill(picture.get(), redGreenBlueAlpha);
    char* bytes = nullptr;
    gsize length = 0;
    if (!gdk_pixbuf_save_to_buffer(picture.get(), &bytes, &length, "png", nullptr, nullptr))
        throw std::runtime_error("a PNG file could not be made");
    const applist::GLibPointer<char> owned(bytes);
    return {bytes, length};
}

Points decoded(const std::vector<std::uint8_t>& png) {
    if (png.empty()) return {};
    const applist::GObjectPointer<GdkPixbufLoader> loader(gdk_pixbuf_loader_new_with_type("png", nullptr));
    const bool written = gdk_pixbuf_loader_write(loader.get(), png.data(), png.size(), nullptr);
    const bool closed = gdk_pixbuf_loader_close(loader.get(), nullptr);
    const GdkPixbuf* picture = written && closed ? gdk_pixbuf_loader_get_pixbuf(loader.get()) : nullptr;
    if (!picture) return {};
    Points points{gdk_pixbuf_get_width(picture), gdk_pixbuf_get_height(picture), {}};
    const bool alpha = gdk_pixbuf_get_has_alpha(picture);
    const guint8* bytes = gdk_pixbuf_read_pixels(picture);
    for (int y = 0; y < points.height; ++y) {
        const guint8* point = bytes + std::ptrdiff_t(y) * gdk_pixbuf_get_rowstride(picture);
        for (int x = 0; x < points.width; ++x, point += alpha ? 4 : 3)
            points.redGreenBlueAlpha.push_back(std::uint32_t(point[0]) << 24 | std::uint32_t(point[1]) << 16 |
                                               std::uint32_t(point[2]) << 8 | (alpha ? point[3] : 0xFF));
    }
    return points;
}

FolderTest::FolderTest() : folder(Desktop::folder() / testName()) {
    fs::create_directories(folder);
}

FolderTest::~FolderTest() {
    std::error_code ignored;
    fs::remove_all(folder, ignored);
}

} // namespace tests
