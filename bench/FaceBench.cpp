// What a change of the settings costs a lock screen: what is decided about its looks, and drawing it; and a swipe between
// App Views. Processor time of the GUI thread, of the key that takes most of it. QT_SCALE_FACTOR says how many pixels a
// point has.

#include "Frames.h"
#include "lockscreen/KeyTable.h"
#include "lockscreen/LookOf.h"
#include "lockscreen/face/LiveFace.h"

#include "link/PreferenceKeys.h"

#include <benchmark/benchmark.h>

#include <QGuiApplication>
#include <QtQml/qqmlextensionplugin.h>

#include <algorithm>
#include <functional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

Q_IMPORT_QML_PLUGIN(LumoraFacePlugin)

using namespace lumora;
using platform::Dictionary;

namespace {

constexpr int kWarmUp = 2;
constexpr int kSamples = 5;
constexpr int kPatience = 1000; // milliseconds until a frame
constexpr int kMoves = 20;      // of a finger that swipes
constexpr int kSwipes = 12;

double median(std::vector<double> samples) {
    const auto middle = samples.begin() + static_cast<std::ptrdiff_t>(samples.size() / 2);
    std::ranges::nth_element(samples, middle);
    return *middle;
}

/// The window of a phone with everything enabled that is installed, at a time that stands still.
class Screen {
  public:
    explicit Screen(bool landscape, bool animated = false)
        : live_({options(landscape), "dusk", qGuiApp->devicePixelRatio(), {}, [] { return 0.0; }}) {
        static const auto installation = Installation::readNow();
        live_.take(installation);
        if (!live_.makeBackdrop()) throw std::runtime_error("there is no wallpaper");
        platform::List applications;
        platform::List views;
        for (const Application& application : installation->installed().applications)
            applications.emplace_back(application.identifier);
        for (const AppViewInfo& view : installation->installed().views)
            views.emplace_back(view.identifier);
        everything_.set(std::string(kTweakEnabled), true);
        everything_.set(std::string(kAppsEnabled), applications);
        everything_.set(std::string(kAppViewsEnabled), views);
        model().setFallsAsleep(false);

        const platform::CGSize size = live_.options().phone.size;
        shown_.show(QUrl(QStringLiteral("qrc:/qt/qml/LumoraFace/Face.qml")),
                    {{QStringLiteral("face"), QVariant::fromValue(&model())}, {QStringLiteral("animated"), animated}},
                    {static_cast<int>(size.width), static_cast<int>(size.height)});
    }

    [[nodiscard]] FaceModel& model() { return *live_.model(); }
    [[nodiscard]] const Behaviour& behaviour() { return model().behaviour(); }

    /// Where the effect of a key is to be seen; the settings there.
    Dictionary show(const Scene& scene) {
        PhoneOptions phone = live_.options().phone;
        phone.passcode = scene.passcode ? "1234" : "";
        static const auto installation = Installation::readNow();
        model().setPhone(Phone(phone, installation->installed()).device(0));
        Dictionary settings = everything_;
        for (const auto& [key, value] : scene.others)
            settings.set(key, value);
        model().setSettings(settings, {});
        model().drive([&](Behaviour& behaviour) {
            behaviour.apply({Gesture::Kind::key, "Home", 1}, 0);
            behaviour.show(scene.surface, 0);
        });
        settle();
        return settings;
    }
    /// The processor time from a change to the frame that shows it; nothing if none comes.
    std::optional<double> draw(const std::function<void()>& change) {
        settle();
        const double begin = bench::processorTime();
        change();
        return shown_.nextFrame(kPatience) ? std::optional(bench::processorTime() - begin) : std::nullopt;
    }
    /// A finger swipes to the next App View: the processor time of each frame until all is at rest.
    [[nodiscard]] std::vector<double> swipe() {
        settle();
        std::vector<double> frames;
        double begin = bench::processorTime();
        const auto draws = [&](int patience) {
            if (!shown_.nextFrame(patience)) return false;
            const double end = bench::processorTime();
            frames.push_back(end - std::exchange(begin, end));
            return true;
        };
        QPointF finger(300, 600);
        model().press(finger);
        for (int move = 0; move < kMoves; ++move) {
            model().move(finger -= QPointF(10, 0));
            draws(kPatience);
        }
        model().release();
        while (draws(50) || !live_.views().isComplete()) {
        }
        return frames;
    }

  private:
    static PhoneOptions options(bool landscape) {
        PhoneOptions options;
        if (landscape) std::swap(options.size.width, options.size.height);
        return options;
    }
    /// Until all icons and App Views are there and nothing is drawn any more.
    void settle() {
        while (shown_.nextFrame(15) || !live_.icons().isComplete() || !live_.views().isComplete()) {
        }
    }

    Dictionary everything_;
    LiveFace live_;
    bench::ItemWindow shown_;
};

/// Never destroyed: the toolkit goes first.
Screen& screenFor(const Scene& scene) {
    static Screen& upright = *new Screen(false);
    static Screen& landscape = *new Screen(true);
    return scene.landscape ? landscape : upright;
}

/// Settings without and with the change of a key. Of a list, the first entry is dropped at the end.
std::pair<Dictionary, Dictionary> change(const KeyEntry& entry, Screen& screen) {
    const Dictionary before = screen.show(entry.scene);
    const platform::Value present = before[entry.key];
    platform::Value next = present == entry.scene.shown ? entry.stock : entry.scene.shown;
    if (present.list()) {
        platform::List list = *present.list();
        std::rotate(list.begin(), list.begin() + 1, list.end());
        next = list;
    }
    Dictionary after = before;
    after.set(std::string(entry.key), next);
    return {before, after};
}

/// The median of what a key's change takes there and back, for the key that takes longest.
void measureDearest(benchmark::State& state,
                    const std::function<std::optional<double>(const KeyEntry&, Screen&)>& sample) {
    for ([[maybe_unused]] auto _ : state) {
        double dearest = 0;
        for (const KeyEntry& entry : keyTable()) {
            const auto cost = sample(entry, screenFor(entry.scene));
            if (!cost || *cost <= dearest) continue;
            dearest = *cost;
            state.SetLabel(std::string(entry.key));
        }
        state.SetIterationTime(dearest);
    }
}

void LookOfChange(benchmark::State& state) {
    measureDearest(state, [](const KeyEntry& entry, Screen& screen) -> std::optional<double> {
        const auto [before, after] = change(entry, screen);
        const Device& device = screen.behaviour().device();
        const State& shown = screen.behaviour().state();
        const Look former = lookOf(before, device, shown);
        std::vector<double> samples;
        for (int i = 0; i < 20 * kSamples; ++i) {
            const double begin = bench::processorTime();
            benchmark::DoNotOptimize(diff(former, lookOf(after, device, shown)));
            samples.push_back(bench::processorTime() - begin);
        }
        return median(samples);
    });
}

void FaceChange(benchmark::State& state) {
    measureDearest(state, [](const KeyEntry& entry, Screen& screen) -> std::optional<double> {
        const auto [before, after] = change(entry, screen);
        const Device& device = screen.behaviour().device();
        const State& shown = screen.behaviour().state();
        if (diff(lookOf(before, device, shown), lookOf(after, device, shown)).empty()) return {};
        std::vector<double> samples;
        for (int i = 0; i < kWarmUp + 2 * kSamples; ++i) {
            const Dictionary& next = i % 2 == 0 ? after : before;
            const auto cost = screen.draw([&] { screen.model().setSettings(next, {}); });
            if (cost && i >= kWarmUp) samples.push_back(*cost);
        }
        return samples.empty() ? std::nullopt : std::optional(median(samples));
    });
}

/// Over the notices, with all that it is drawn with.
void PasscodeView(benchmark::State& state) {
    Screen& screen = screenFor({});
    screen.show({});
    for ([[maybe_unused]] auto _ : state) {
        std::vector<double> samples;
        for (int i = 0; i < kWarmUp + kSamples; ++i) {
            const auto cost = screen.draw([&] { screen.model().show(Surface::passcode); });
            if (cost && i >= kWarmUp) samples.push_back(*cost);
            screen.draw([&] { screen.model().act(QStringLiteral("key Escape")); });
        }
        if (samples.empty())
            state.SkipWithError("nothing is drawn");
        else
            state.SetIterationTime(median(samples));
    }
}

/// The 95th percentile of all frames of some swipes, which go through the App Views that there are.
void SwipeAppViews(benchmark::State& state) {
    static Screen& screen = *new Screen(false, true);
    screen.show({Surface::appView, {}, {}, {}, false, false});
    for ([[maybe_unused]] auto _ : state) {
        std::vector<double> frames;
        bool turns = true;
        for (int i = 0; i < kSwipes; ++i) {
            const std::string before = screen.behaviour().state().view;
            const std::vector<double> more = screen.swipe();
            frames.insert(frames.end(), more.begin(), more.end());
            turns = turns && screen.behaviour().state().view != before;
        }
        std::ranges::sort(frames);
        if (turns && !frames.empty())
            state.SetIterationTime(frames[frames.size() * 95 / 100]);
        else
            state.SkipWithError("the next App View does not come");
    }
}

} // namespace

int main(int count, char** words) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_QUICK_BACKEND", "software");
    qputenv("QSG_RENDER_LOOP", "basic");
    qputenv("LUMORA_ROOT", LUMORA_DEVICE_ROOT);
    const QGuiApplication program(count, words);
    QGuiApplication::setFont(QFont(QStringLiteral("Inter")));
    const int ratio = qRound(qGuiApp->devicePixelRatio());
    const std::string at = ratio == 3 ? "AtThree" : ratio == 2 ? "AtTwo" : "AtOne";
    const auto add = [](const std::string& name, void (*measure)(benchmark::State&), benchmark::TimeUnit unit) {
        benchmark::RegisterBenchmark(name.c_str(), measure)->UseManualTime()->Iterations(1)->Repetitions(3)->Unit(unit);
    };
    if (ratio == 1) add("LookOfChange", LookOfChange, benchmark::kMicrosecond);
    add("FaceChange" + at, FaceChange, benchmark::kMillisecond);
    add("PasscodeView" + at, PasscodeView, benchmark::kMillisecond);
    add("SwipeAppViews" + at, SwipeAppViews, benchmark::kMillisecond);
    benchmark::Initialize(&count, words);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
