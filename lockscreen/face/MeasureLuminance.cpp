#include "lockscreen/face/MeasureLuminance.h"

#include "lockscreen/Look.h"

#include <array>
#include <cstddef>
#include <utility>
#include <vector>

namespace lumora {
namespace {

/// What each value of a channel adds to the luminance, which is a sum over the channels.
using Shares = std::array<float, 256>;

template<class Paint>
Shares sharesOf(Paint paint) {
    Shares shares{};
    for (std::size_t value = 0; value < shares.size(); ++value)
        shares[value] = static_cast<float>(luminanceOf(paint(static_cast<double>(value) / 255)));
    return shares;
}

/// Where each cell begins among that many pixels, and where the last one ends.
std::vector<int> borders(int cells, int pixels) {
    std::vector<int> places;
    for (int i = 0; i <= cells; ++i)
        places.push_back(static_cast<int>(static_cast<qint64>(i) * pixels / cells));
    return places;
}

} // namespace

Luminance measureLuminance(const QImage& picture, const QSize& cells) {
    static const Shares red = sharesOf([](double value) { return Color{value, 0, 0}; });
    static const Shares green = sharesOf([](double value) { return Color{0, value, 0}; });
    static const Shares blue = sharesOf([](double value) { return Color{0, 0, value}; });

    const QSize count = cells.boundedTo(picture.size()).expandedTo({1, 1});
    const std::vector<int> columns = borders(count.width(), picture.width());
    const std::vector<int> rows = borders(count.height(), picture.height());
    std::vector<float> means;
    for (std::size_t row = 0; row + 1 < rows.size(); ++row)
        for (std::size_t column = 0; column + 1 < columns.size(); ++column) {
            double sum = 0;
            for (int y = rows[row]; y < rows[row + 1]; ++y) {
                const auto* pixels = reinterpret_cast<const QRgb*>(picture.constScanLine(y));
                float line = 0;
                for (int x = columns[column]; x < columns[column + 1]; ++x)
                    line += red[static_cast<std::size_t>(qRed(pixels[x]))] +
                            green[static_cast<std::size_t>(qGreen(pixels[x]))] +
                            blue[static_cast<std::size_t>(qBlue(pixels[x]))];
                sum += static_cast<double>(line);
            }
            const double pixels =
                static_cast<double>(columns[column + 1] - columns[column]) * (rows[row + 1] - rows[row]);
            means.push_back(static_cast<float>(sum / pixels));
        }
    return {columns.size() - 1, rows.size() - 1, std::move(means)};
}

} // namespace lumora
