#include "lockscreen/face/Blur.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

namespace lumora {
namespace {

// All loops run over channels rather than pixels, which compilers turn into instructions for many at once. Those that go
// through a whole picture are functions of one row, and take the widest instructions that the processor has.

#ifdef __x86_64__
template<auto Loop, class... Arguments>
[[gnu::target("avx2")]] void runWide(Arguments... arguments) {
    Loop(arguments...);
}
#endif

template<auto Loop, class... Arguments>
void run(Arguments... arguments) {
#ifdef __x86_64__
    if (__builtin_cpu_supports("avx2")) return runWide<Loop>(arguments...);
#endif
    Loop(arguments...);
}

constexpr std::size_t kChannels = 4;

/// A row with room for sums of channels.
using Sums = std::vector<std::uint16_t>;

std::size_t channelsOf(const QImage& picture) {
    return static_cast<std::size_t>(picture.width()) * kChannels;
}

const uchar* rowOf(const QImage& picture, int y) {
    return picture.constScanLine(std::clamp(y, 0, picture.height() - 1));
}

/// Shares of a mixture are counted in these.
constexpr unsigned kWhole = 256;
constexpr unsigned kRounding = kWhole / 2 - 1;

unsigned partOf(double share) {
    return static_cast<unsigned>(std::lround(std::clamp(share, 0.0, 1.0) * kWhole));
}

[[gnu::always_inline]] inline void addRow(const uchar* row, std::uint16_t* sums, std::size_t channels) {
    for (std::size_t i = 0; i < channels; ++i)
        sums[i] = static_cast<std::uint16_t>(sums[i] + row[i]);
}

/// The means of sums to which one row comes and from which another goes; `ofOne` is the share of one pixel, in 65536ths.
[[gnu::always_inline]] inline void moveRow(const uchar* coming, const uchar* going, std::uint16_t* sums, uchar* means,
                                           std::size_t channels, std::uint32_t ofOne) {
    for (std::size_t i = 0; i < channels; ++i) {
        const auto sum = static_cast<std::uint16_t>(sums[i] + coming[i]);
        means[i] = static_cast<uchar>(sum * ofOne >> 16);
        sums[i] = static_cast<std::uint16_t>(sum - going[i]);
    }
}

/// The row that lies so many eighths of the way between two that come in eighths.
[[gnu::always_inline]] inline void mixRows(const std::uint16_t* above, const std::uint16_t* below, uchar* row,
                                           std::size_t channels, unsigned eighths) {
    const auto near = static_cast<std::uint16_t>(eighths);
    const auto far = static_cast<std::uint16_t>(8 - near);
    for (std::size_t i = 0; i < channels; ++i)
        row[i] = static_cast<uchar>(static_cast<std::uint16_t>(above[i] * far + below[i] * near + 32) >> 6);
}

[[gnu::always_inline]] inline void layOver(const uchar* below, uchar* row, std::size_t channels, unsigned share) {
    const unsigned rest = kWhole - share;
    for (std::size_t i = 0; i < channels; ++i)
        row[i] = static_cast<uchar>(static_cast<std::uint16_t>(row[i] * share + below[i] * rest + kRounding) >> 8);
}

/// A box blur along columns.
void blurDown(const QImage& from, QImage& to, int radius) {
    const std::size_t channels = channelsOf(from);
    const auto count = static_cast<std::uint32_t>(2 * radius + 1);
    const std::uint32_t ofOne = 0x10000 / count + 1;
    Sums sums(channels, static_cast<std::uint16_t>(count / 2)); // rounds the means
    for (int y = -radius; y < radius; ++y)
        run<addRow>(rowOf(from, y), sums.data(), channels);
    for (int y = 0; y < from.height(); ++y)
        run<moveRow>(rowOf(from, y + radius), rowOf(from, y - radius), sums.data(), to.scanLine(y), channels, ofOne);
}

QImage transposed(const QImage& picture) {
    QImage turned(picture.size().transposed(), QImage::Format_RGB32);
    const auto stride = static_cast<std::size_t>(turned.bytesPerLine()) / sizeof(QRgb);
    auto* pixels = reinterpret_cast<QRgb*>(turned.bits());
    for (int y = 0; y < picture.height(); ++y) {
        const auto* row = reinterpret_cast<const QRgb*>(picture.constScanLine(y));
        for (std::size_t x = 0; x < static_cast<std::size_t>(picture.width()); ++x)
            pixels[x * stride + static_cast<std::size_t>(y)] = row[x];
    }
    return turned;
}

/// Where the pixels of a cell lie between the middles of cells: from which one on, counted from the cell before, and how
/// near to the next, in eighths.
struct Between {
    std::size_t first;
    unsigned eighths;
};
constexpr std::array<Between, kSoftScale> kBetween{{{0, 5}, {0, 7}, {1, 1}, {1, 3}}};

int cellOf(int place) {
    return place >= 0 ? place / kSoftScale : -((kSoftScale - 1 - place) / kSoftScale);
}

/// Some cells of a row of the quarter, four times as wide. Values come out in eighths.
void widen(const QImage& quarter, int row, int firstCell, Sums& wide) {
    const auto* pixels = reinterpret_cast<const QRgb*>(rowOf(quarter, row));
    const std::size_t cells = wide.size() / kChannels / kSoftScale;
    std::vector<QRgb> around(cells + 2);
    for (std::size_t i = 0; i < around.size(); ++i)
        around[i] = pixels[std::clamp(firstCell - 1 + static_cast<int>(i), 0, quarter.width() - 1)];
    const auto* source = reinterpret_cast<const uchar*>(around.data());
    std::uint16_t* target = wide.data();
    for (std::size_t cell = 0; cell < cells; ++cell, source += kChannels)
        for (const Between& between : kBetween) {
            const uchar* one = source + between.first * kChannels;
            for (std::size_t i = 0; i < kChannels; ++i)
                *target++ =
                    static_cast<std::uint16_t>(one[i] * (8 - between.eighths) + one[i + kChannels] * between.eighths);
        }
}

/// Of each cell of the columns' sums, which are of so many rows.
void writeMeans(const Sums& sums, unsigned rows, uchar* target) {
    constexpr std::size_t cell = kChannels * kSoftScale;
    for (std::size_t left = 0; left < sums.size(); left += cell) {
        const std::size_t right = std::min(left + cell, sums.size());
        const unsigned count = std::max(1U, static_cast<unsigned>((right - left) / kChannels) * rows);
        for (std::size_t channel = 0; channel < kChannels; ++channel) {
            unsigned sum = count / 2;
            for (std::size_t i = left + channel; i < right; i += kChannels)
                sum += sums[i];
            *target++ = static_cast<uchar>(sum / count);
        }
    }
}

/// Makes a part larger row by row; `finish` has the row's number in the whole and its channels, which are still at hand.
template<class Finish>
QImage enlargeRows(const QImage& quarter, const QRect& part, const Finish& finish) {
    QImage large(part.size(), QImage::Format_RGB32);
    const int firstCell = cellOf(part.left());
    const int count = cellOf(part.right()) - firstCell + 1;
    const auto cells = static_cast<std::size_t>(count);
    const auto offset = static_cast<std::size_t>(part.left() - firstCell * kSoftScale) * kChannels;
    const std::size_t channels = channelsOf(large);
    // The two rows of the quarter between which the present one lies.
    Sums upper(cells * kSoftScale * kChannels);
    Sums lower(upper.size());
    int upperRow = cellOf(part.top()) - 2;
    widen(quarter, upperRow + 1, firstCell, lower);
    for (int y = part.top(); y <= part.bottom(); ++y) {
        const Between& between = kBetween[static_cast<std::size_t>(y - cellOf(y) * kSoftScale)];
        for (const int wanted = cellOf(y) - 1 + static_cast<int>(between.first); upperRow < wanted; ++upperRow) {
            std::swap(upper, lower);
            widen(quarter, upperRow + 2, firstCell, lower);
        }
        uchar* target = large.scanLine(y - part.top());
        run<mixRows>(upper.data() + offset, lower.data() + offset, target, channels, between.eighths);
        finish(y, target);
    }
    return large;
}

} // namespace

QImage quartered(const QImage& picture) {
    const QSize size((picture.width() + kSoftScale - 1) / kSoftScale, (picture.height() + kSoftScale - 1) / kSoftScale);
    QImage quarter(size, QImage::Format_RGB32);
    Sums sums(channelsOf(picture));
    for (int y = 0; y < size.height(); ++y) {
        const int bottom = std::min((y + 1) * kSoftScale, picture.height());
        std::ranges::fill(sums, 0);
        for (int line = y * kSoftScale; line < bottom; ++line)
            run<addRow>(picture.constScanLine(line), sums.data(), sums.size());
        writeMeans(sums, static_cast<unsigned>(bottom - y * kSoftScale), quarter.scanLine(y));
    }
    return quarter;
}

void blur(QImage& picture, int radius) {
    constexpr int largest = 63; // up to which the shares of pixels are exact enough
    const int within = std::clamp(radius, 0, largest);
    const auto threeTimesDown = [within](QImage& upright) {
        QImage other(upright.size(), QImage::Format_RGB32);
        for (int turn = 0; turn < 3; ++turn) {
            blurDown(upright, other, within);
            std::swap(upright, other);
        }
    };
    threeTimesDown(picture);
    QImage turned = transposed(picture);
    threeTimesDown(turned);
    picture = transposed(turned);
}

void mixIn(QImage& picture, const QColor& color, double share) {
    const unsigned part = partOf(share);
    const QRgb pixel = color.rgb();
    Sums added(channelsOf(picture));
    for (std::size_t i = 0; i < added.size(); ++i)
        added[i] = static_cast<std::uint16_t>((pixel >> i % kChannels * 8 & 0xFF) * part + kRounding);
    for (int y = 0; y < picture.height(); ++y) {
        uchar* row = picture.scanLine(y);
        for (std::size_t i = 0; i < added.size(); ++i)
            row[i] = static_cast<uchar>((row[i] * (kWhole - part) + added[i]) / kWhole);
    }
}

QImage enlarged(const QImage& quarter, const QRect& part) {
    return enlargeRows(quarter, part, [](int, uchar*) {});
}

QImage enlargedOver(const QImage& quarter, const QRect& part, const QImage& under, double opacity) {
    const unsigned share = partOf(opacity);
    if (share == kWhole) return enlarged(quarter, part);
    const std::size_t channels = static_cast<std::size_t>(part.width()) * kChannels;
    const std::size_t left = static_cast<std::size_t>(part.left()) * kChannels;
    return enlargeRows(quarter, part,
                       [&](int y, uchar* row) { run<layOver>(under.constScanLine(y) + left, row, channels, share); });
}

} // namespace lumora
