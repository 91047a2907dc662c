// From a key in the search to the drawn results, among 10,000 rows: by the clock, as a person waits for it.

#include "Frames.h"
#include "SearchedRows.h"
#include "settings/model/SearchModel.h"

#include <benchmark/benchmark.h>

#include <QElapsedTimer>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QtQml/qqmlextensionplugin.h>

#include <algorithm>
#include <array>
#include <stdexcept>
#include <string>
#include <vector>

Q_IMPORT_QML_PLUGIN(LumoraPlugin)

namespace {

constexpr int kFramePatience = 1000; // milliseconds
constexpr std::array kTyped{"blur color", "passcode view", "opactiy", "hide button size"};

/// A window with nothing but the search.
class SearchWindow {
  public:
    SearchWindow() {
        search_.setIndex(bench::tenThousandRows());
        shown_.show(QUrl(QStringLiteral("qrc:/qt/qml/Lumora/SearchPanel.qml")),
                    {{QStringLiteral("search"), QVariant::fromValue(&search_)}}, {390, 792});
        shown_.window().requestActivate();
        QMetaObject::invokeMethod(&shown_.item(), "begin", Q_ARG(QVariant, QString()));
        shown_.settle(100);
    }

    /// Milliseconds from the key to the frame that shows what it finds.
    double press(QChar letter) {
        QElapsedTimer clock;
        clock.start();
        QKeyEvent key(QEvent::KeyPress, 0, Qt::NoModifier, QString(letter));
        QCoreApplication::sendEvent(&shown_.window(), &key);
        if (!shown_.nextFrame(kFramePatience)) throw std::runtime_error("nothing is drawn");
        return double(clock.nsecsElapsed()) / 1e6;
    }
    void empty() {
        QKeyEvent key(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
        QCoreApplication::sendEvent(&shown_.window(), &key);
        shown_.settle();
    }
    [[nodiscard]] QString query() const { return search_.query(); }

  private:
    settings::SearchModel search_;
    bench::ItemWindow shown_;
};

/// The 95th percentile of all keys of what is typed.
void DrawResults(benchmark::State& state) {
    static SearchWindow& window = *new SearchWindow; // the toolkit goes first
    for (auto _ : state) {
        std::vector<double> times;
        for (const QString typed : kTyped) {
            for (const QChar letter : typed)
                times.push_back(window.press(letter));
            if (window.query() != typed) return state.SkipWithError("the keys have not come");
            window.empty();
        }
        const auto tail = times.begin() + std::ptrdiff_t(times.size() * 95 / 100);
        std::ranges::nth_element(times, tail);
        state.SetIterationTime(*tail / 1e3);
    }
}
BENCHMARK(DrawResults)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(3);

} // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_QUICK_BACKEND", "software");
    const QGuiApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
