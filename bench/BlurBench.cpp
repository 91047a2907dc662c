// What a backdrop costs on screens with one, two and three pixels to a point.

#include "lockscreen/face/Backdrop.h"
#include "lockscreen/face/Blur.h"

#include <benchmark/benchmark.h>

#include <QColor>
#include <QCoreApplication>
#include <QImage>
#include <QSize>

#include <cstdint>

namespace {

/// Of a phone, and the radius of its blur in a picture of a quarter of the edges.
QImage screen(std::int64_t ratio) {
    QImage picture(QSize(390, 844) * static_cast<int>(ratio), QImage::Format_RGB32);
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 0; x < picture.width(); ++x)
            picture.setPixel(x, y, qRgb(x * 37 + y * 11, x * 5 + y * 91, x * y) | 0xFF000000);
    return picture;
}

int radius(std::int64_t ratio) {
    return static_cast<int>(26 * ratio / lumora::kSoftScale);
}

/// From the picture to its blur.
void BlurScreen(benchmark::State& state) {
    const QImage picture = screen(state.range(0));
    for ([[maybe_unused]] auto _ : state) {
        QImage soft = lumora::quartered(picture);
        lumora::blur(soft, radius(state.range(0)));
        benchmark::DoNotOptimize(soft.constBits());
    }
}
BENCHMARK(BlurScreen)->Name("BlurScreenAtOne")->Arg(1)->Unit(benchmark::kMillisecond);
BENCHMARK(BlurScreen)->Name("BlurScreenAtTwo")->Arg(2)->Unit(benchmark::kMillisecond);
BENCHMARK(BlurScreen)->Name("BlurScreenAtThree")->Arg(3)->Unit(benchmark::kMillisecond);

/// What the passcode view needs anew when its tint or the blur's opacity changes.
void TintScreen(benchmark::State& state) {
    const QImage picture = screen(state.range(0));
    const QImage soft = lumora::quartered(picture);
    for ([[maybe_unused]] auto _ : state) {
        QImage tinted = soft;
        lumora::mixIn(tinted, Qt::blue, 0.62);
        const QImage shown = lumora::enlargedOver(tinted, picture.rect(), picture, 0.7);
        benchmark::DoNotOptimize(shown.constBits());
    }
}
BENCHMARK(TintScreen)->Name("TintScreenAtOne")->Arg(1)->Unit(benchmark::kMillisecond);
BENCHMARK(TintScreen)->Name("TintScreenAtTwo")->Arg(2)->Unit(benchmark::kMillisecond);
BENCHMARK(TintScreen)->Name("TintScreenAtThree")->Arg(3)->Unit(benchmark::kMillisecond);

/// From the file of a wallpaper to everything that is drawn of it.
void MakeBackdrop(benchmark::State& state) {
    const lumora::BackdropOrder order{QStringLiteral("dusk"), {390, 844}, static_cast<double>(state.range(0))};
    for ([[maybe_unused]] auto _ : state)
        if (!lumora::makeBackdrop(order)) state.SkipWithError("there is no wallpaper");
}
BENCHMARK(MakeBackdrop)->Name("MakeBackdropAtOne")->Arg(1)->Unit(benchmark::kMillisecond);
BENCHMARK(MakeBackdrop)->Name("MakeBackdropAtTwo")->Arg(2)->Unit(benchmark::kMillisecond);
BENCHMARK(MakeBackdrop)->Name("MakeBackdropAtThree")->Arg(3)->Unit(benchmark::kMillisecond);

} // namespace

int main(int count, char** words) {
    const QCoreApplication program(count, words); // wallpapers are found from its folder
    benchmark::Initialize(&count, words);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
