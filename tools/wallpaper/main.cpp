// Draws the wallpapers of the lock screen as FOLDER/NAME-portrait.jpg and FOLDER/NAME-landscape.jpg, as large as a phone
// has use for. They are the same whenever they are drawn.

#include "tools/wallpaper/Landscape.h"

#include <QFile>
#include <QImageWriter>

#include <cstdio>
#include <string>

namespace {

constexpr QSize kPortrait(1170, 2532);
constexpr int kQuality = 92;

bool draw(const wallpaper::Scene& scene, const QSize& pixels, const std::string& file) {
    QImageWriter writer(QString::fromStdString(file), "jpg");
    writer.setQuality(kQuality);
    writer.setOptimizedWrite(true);
    if (writer.write(wallpaper::Landscape(scene, pixels).painted())) return true;
    std::fprintf(stderr, "draw_wallpapers: %s: %s\n", file.c_str(), qUtf8Printable(writer.errorString()));
    return false;
}

} // namespace

int main(int count, char** words) {
    if (count != 2) {
        std::fputs("usage: draw_wallpapers FOLDER\n", stderr);
        return 2;
    }
    for (const wallpaper::Scene& scene : wallpaper::scenes()) {
        const std::string file = std::string(words[1]) + "/" + scene.name;
        if (!draw(scene, kPortrait, file + "-portrait.jpg")) return 1;
        if (!draw(scene, kPortrait.transposed(), file + "-landscape.jpg")) return 1;
    }
    return 0;
}
