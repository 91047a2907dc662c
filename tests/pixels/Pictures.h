#pragma once

#include "tests/support/TemporaryFolder.h"

#include <QImage>
#include <QString>

#include <algorithm>
#include <cstdlib>
#include <stdexcept>
#include <string>

namespace tests {

inline QImage flat(const QSize& size, QRgb color) {
    QImage picture(size, QImage::Format_RGB32);
    picture.fill(color);
    return picture;
}

/// No two neighbours are alike, and no two pictures of different seeds.
inline QImage varied(const QSize& size, int seed = 0) {
    QImage picture(size, QImage::Format_RGB32);
    for (int y = 0; y < size.height(); ++y)
        for (int x = 0; x < size.width(); ++x)
            picture.setPixel(x, y,
                             qRgb((x * 37 + y * 11 + seed * 50) % 256, (x * 5 + y * 91) % 256, (x * y + seed) % 256));
    return picture;
}

/// The largest difference of a channel; 256 for pictures of different sizes.
inline int difference(const QImage& one, const QImage& other) {
    if (one.size() != other.size()) return 256;
    int most = 0;
    for (int y = 0; y < one.height(); ++y)
        for (int x = 0; x < one.width(); ++x) {
            const QRgb a = one.pixel(x, y);
            const QRgb b = other.pixel(x, y);
            for (const int apart :
                 {qRed(a) - qRed(b), qGreen(a) - qGreen(b), qBlue(a) - qBlue(b), qAlpha(a) - qAlpha(b)})
                most = std::max(most, std::abs(apart));
        }
    return most;
}

/// Pictures as files.
class PictureFolder {
  public:
    QString save(const QImage& picture, const std::string& name = "picture.png") const {
        const QString file = path(name);
        if (!picture.save(file)) throw std::runtime_error("cannot save " + file.toStdString());
        return file;
    }
    [[nodiscard]] QString path(const std::string& name) const {
        return QString::fromStdString((folder_.path() / name).string());
    }

  private:
    TemporaryFolder folder_{"lumora-pictures"};
};

} // namespace tests
