#include "lockscreen/face/Blur.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

namespace lumora {
namespace {

/// The four channels of a pixel side by side, each with room for the sum of 257 of them.
using Lanes = std::uint64_t;

constexpr Lanes kEachLane = 0x0001'0001'0001'0001;

Lanes spread(QRgb pixel) {
    Lanes lanes = pixel;
    lanes = (lanes | lanes << 16) & 0x0000'FFFF'0000'FFFF;
    return (lanes | lanes << 8) & 0x00FF'00FF'00FF'00FF;
}

/// The inverse of spread(). The upper byte of each lane has to be empty.
QRgb gathered(Lanes lanes) {
    lanes = (lanes | lanes >> 8) & 0x0000'FFFF'0000'FFFF;
    return static_cast<QRgb>(lanes | lanes >> 16);
}

const QRgb* line(const QImage& picture, int y) {
    return reinterpret_cast<const QRgb*>(picture.constScanLine(y));
}

QRgb* line(QImage& picture, int y) {
    return reinterpret_cast<QRgb*>(picture.scanLine(y));
}

/// The mean of the pixels that lie within a radius, of their sum.
class Box {
  public:
    explicit Box(int radius)
        : radius_(std::clamp(radius, 0, kLargest)), count_(2 * static_cast<std::uint64_t>(radius_) + 1),
          ofOne_((std::uint64_t{1} << kBits) / count_ + 1) {}

    [[nodiscard]] int radius() const { return radius_; }
    /// With what sums begin, so that means are rounded.
    [[nodiscard]] Lanes none() const { return kEachLane * (count_ / 2); }
    [[nodiscard]] QRgb mean(Lanes sum) const {
        const auto lane = [&](int number) {
            return static_cast<QRgb>((sum >> 16 * number & 0xFFFF) * ofOne_ >> kBits) << 8 * number;
        };
        return 0xFF000000 | lane(2) | lane(1) | lane(0);
    }

  private:
    static constexpr int kLargest = 127;
    static constexpr int kBits = 24;

    int radius_;
    std::uint64_t count_;
    std::uint64_t ofOne_; ///< the share of one pixel
};

void blurAcross(const QImage& from, QImage& to, const Box& box) {
    const auto width = static_cast<std::size_t>(from.width());
    const auto radius = static_cast<std::size_t>(box.radius());
    std::vector<Lanes> row(width + 2 * radius + 1);
    for (int y = 0; y < from.height(); ++y) {
        const QRgb* source = line(from, y);
        std::transform(source, source + width, row.begin() + box.radius(), spread);
        std::fill_n(row.begin(), radius, row[radius]);
        std::fill_n(row.end() - box.radius() - 1, radius + 1, row[radius + width - 1]);

        Lanes sum = box.none();
        for (std::size_t x = 0; x < 2 * radius; ++x)
            sum += row[x];
        QRgb* target = line(to, y);
        for (std::size_t x = 0; x < width; ++x) {
            sum += row[x + 2 * radius];
            target[x] = box.mean(sum);
            sum -= row[x];
        }
    }
}

void blurDown(const QImage& from, QImage& to, const Box& box) {
    const auto width = static_cast<std::size_t>(from.width());
    const auto row = [&](int y) { return line(from, std::clamp(y, 0, from.height() - 1)); };
    std::vector<Lanes> sums(width, box.none());
    for (int y = -box.radius(); y < box.radius(); ++y)
        for (std::size_t x = 0; x < width; ++x)
            sums[x] += spread(row(y)[x]);
    for (int y = 0; y < from.height(); ++y) {
        const QRgb* coming = row(y + box.radius());
        const QRgb* going = row(y - box.radius());
        QRgb* target = line(to, y);
        for (std::size_t x = 0; x < width; ++x) {
            sums[x] += spread(coming[x]);
            target[x] = box.mean(sums[x]);
            sums[x] -= spread(going[x]);
        }
    }
}

/// Between which pixels of a quarter a pixel lies, and how near it is to the second one, in eighths.
struct Between {
    int first;
    unsigned eighths;
};

Between between(int place) {
    constexpr unsigned nearness[kSoftScale] = {5, 7, 1, 3};
    const int cell = place >> 2; // rounds down where the place is negative too
    const int within = place & 3;
    return {within < 2 ? cell - 1 : cell, nearness[within]};
}

Lanes mixed(Lanes first, Lanes second, unsigned eighths) {
    return first * (8 - eighths) + second * eighths;
}

} // namespace

QImage quartered(const QImage& picture) {
    const QSize size((picture.width() + kSoftScale - 1) / kSoftScale, (picture.height() + kSoftScale - 1) / kSoftScale);
    QImage quarter(size, QImage::Format_RGB32);
    for (int y = 0; y < size.height(); ++y) {
        QRgb* target = line(quarter, y);
        const int bottom = std::min((y + 1) * kSoftScale, picture.height());
        for (int x = 0; x < size.width(); ++x) {
            const int right = std::min((x + 1) * kSoftScale, picture.width());
            const int tall = bottom - y * kSoftScale;
            const int wide = right - x * kSoftScale;
            const auto count = static_cast<Lanes>(wide * tall);
            Lanes sum = kEachLane * (count / 2);
            for (int j = y * kSoftScale; j < bottom; ++j)
                for (int i = x * kSoftScale; i < right; ++i)
                    sum += spread(line(picture, j)[i]);
            Lanes mean = 0;
            for (int bits = 0; bits < 64; bits += 16)
                mean |= (sum >> bits & 0xFFFF) / count << bits;
            target[x] = gathered(mean);
        }
    }
    return quarter;
}

void blur(QImage& picture, int radius) {
    const Box box(radius);
    QImage other(picture.size(), QImage::Format_RGB32);
    for (int turn = 0; turn < 3; ++turn) {
        blurAcross(picture, other, box);
        blurDown(other, picture, box);
    }
}

void mixIn(QImage& picture, const QColor& color, double share) {
    constexpr Lanes whole = 256;
    const auto part = static_cast<Lanes>(std::lround(std::clamp(share, 0.0, 1.0) * whole));
    const Lanes added = spread(color.rgb()) * part + kEachLane * (whole / 2 - 1);
    for (int y = 0; y < picture.height(); ++y) {
        QRgb* row = line(picture, y);
        std::transform(row, row + picture.width(), row, [&](QRgb pixel) {
            return gathered((spread(pixel) * (whole - part) + added) >> 8 & 0x00FF'00FF'00FF'00FF);
        });
    }
}

QImage enlarged(const QImage& quarter, const QRect& part) {
    QImage large(part.size(), QImage::Format_RGB32);
    // The pixels of the quarter that the part needs, a row at a time; one more at each side to mix with.
    const int left = between(part.left()).first;
    const auto count = static_cast<std::size_t>(between(part.right()).first + 2 - left);
    std::vector<Lanes> row(count);
    const auto source = [&](int y) { return line(quarter, std::clamp(y, 0, quarter.height() - 1)); };
    for (int y = 0; y < part.height(); ++y) {
        const Between down = between(part.top() + y);
        const QRgb* upper = source(down.first);
        const QRgb* lower = source(down.first + 1);
        for (std::size_t i = 0; i < count; ++i) {
            const int x = std::clamp(left + static_cast<int>(i), 0, quarter.width() - 1);
            row[i] = mixed(spread(upper[x]), spread(lower[x]), down.eighths);
        }
        QRgb* target = line(large, y);
        for (int x = 0; x < part.width(); ++x) {
            const Between across = between(part.left() + x);
            const auto i = static_cast<std::size_t>(across.first - left);
            const Lanes sum = mixed(row[i], row[i + 1], across.eighths) + kEachLane * 32;
            target[x] = gathered(sum >> 6 & 0x00FF'00FF'00FF'00FF);
        }
    }
    return large;
}

} // namespace lumora
