// Dragging the slider of the history through 5,000 changes, beside a lock screen as large as a phone that shows each of
// the places: processor time of the GUI thread from a step of the slider to the frame that shows it.

#include "Frames.h"
#include "lockscreen/KeyTable.h"
#include "settings/app/History.h"
#include "settings/app/LockScreen.h"
#include "tests/tweak/Program.h"
#include "tests/tweak/Sandbox.h"
#include "tweak/Defaults.h"

#include "link/PreferenceKeys.h"

#include <benchmark/benchmark.h>

#include <QDeadlineTimer>
#include <QGuiApplication>
#include <QtQml/qqmlextensionplugin.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <functional>
#include <optional>
#include <random>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

Q_IMPORT_QML_PLUGIN(LumoraPlugin)

using lumora::Surface;
using platform::Dictionary;
using platform::List;
using platform::Value;

namespace {

constexpr int kRecords = 5'000;
constexpr int kSteps = 120;          ///< from one end to the other: two seconds' worth of frames
constexpr int kFramePatience = 1000; // milliseconds

/// One that its page can set, whatever it is.
Value randomValue(const lumora::KeyEntry& entry, const List& identifiers, std::mt19937& random) {
    const auto fraction = [&] { return static_cast<double>(random() % 1001) / 1000; };
    if (entry.stock.boolean()) return random() % 2 == 0;
    if (entry.bounds) return entry.bounds->least + fraction() * (entry.bounds->most - entry.bounds->least);
    if (entry.stock.dictionary()) return Dictionary{{"h", fraction()}, {"s", fraction()}, {"b", fraction()}};
    if (entry.stock.text()) return "a text of " + std::to_string(random() % 1000);
    List list = identifiers;
    std::ranges::shuffle(list, random);
    list.resize(random() % (list.size() + 1));
    return list;
}

/// Changes of settings that the tweak knows, a minute apart, as it keeps them. It is on all the while; in the end nothing
/// else is set, as a tweak begins.
std::string records(const lumora::Installed& installed) {
    List applications;
    List views;
    for (const lumora::Application& application : installed.applications)
        applications.emplace_back(application.identifier);
    for (const lumora::AppViewInfo& view : installed.views)
        views.emplace_back(view.identifier);
    std::vector<const lumora::KeyEntry*> entries;
    for (const lumora::KeyEntry& entry : lumora::keyTable())
        if (entry.key != lumora::kTweakEnabled && !lumora::isSecure(entry.key)) entries.push_back(&entry);

    std::mt19937 random(1);
    Dictionary settings;
    std::string text;
    for (int i = 1; i <= kRecords; ++i) {
        const auto left = static_cast<std::size_t>(kRecords - i);
        const lumora::KeyEntry& entry = *entries[left < entries.size() ? left : random() % entries.size()];
        const std::string key(entry.key);
        const Value* before = settings.find(key);
        std::optional<Value> after;
        if (left >= entries.size())
            after = randomValue(entry, key == lumora::kAppViewsEnabled ? views : applications, random);
        const auto time = lumora::Moment(std::chrono::hours(490'000) + std::chrono::minutes(i));
        text += lumora::lineOf({i, i, time, key, before ? std::optional(*before) : std::nullopt, after}).value();
        if (after) settings.set(key, *after);
    }
    return text;
}

/// A tweak that keeps them.
class FullTweak {
  public:
    FullTweak() {
        ::setenv("XDG_CACHE_HOME", sandbox_.path().c_str(), 1);
        ::setenv("LUMORA_ROOT", LUMORA_DEVICE_ROOT, 1);
        const auto installation = lumora::Installation::readNow();
        tests::writeFile(sandbox_.path() / "settings.history", records(installation->installed()));
        tweak_.emplace(std::vector<std::string>{LUMORA_TWEAK, "--settings", sandbox_.settings()});
    }

  private:
    tests::Sandbox sandbox_;
    std::optional<tests::RunningTweak> tweak_;
};

/// The sheet of the history beside the lock screen, as a wide window has them.
class ScrubWindow {
  public:
    ScrubWindow() {
        history_.open();
        wait([&] { return history_.isComplete(); }, "the history");
        if (history_.count() != kRecords) throw std::runtime_error("not all changes are known");

        shown_.show(QByteArray(R"(
            import QtQuick
            import Lumora
            import LumoraFace

            Item {
                required property var history
                required property FaceModel face

                HistorySheet { width: 770; height: parent.height; gap: 52; history: parent.history }
                FacePane { x: 770; width: parent.width - x; height: parent.height; face: parent.face }
            })"),
                    {{QStringLiteral("history"), QVariant::fromValue(&history_)},
                     {QStringLiteral("face"), QVariant::fromValue(&face())}},
                    {1260, 952});
        lockScreen_.setShown(true);
        for (QQuickItem* const inner : shown_.item().findChildren<QQuickItem*>())
            if (inner->property("stepSize").isValid()) slider_ = inner;
        if (!slider_) throw std::runtime_error("there is no slider");
        wait([&] { return lockScreen_.isComplete(); }, "the lock screen");
    }

    void show(Surface surface) {
        face().show(surface);
        shown_.settle();
    }
    /// In seconds.
    double step(int place) {
        const double begin = bench::processorTime();
        slider_->setProperty("value", place);
        if (!shown_.nextFrame(kFramePatience)) throw std::runtime_error("nothing is drawn");
        if (history_.place() != place) throw std::runtime_error("the slider is elsewhere");
        return bench::processorTime() - begin;
    }

  private:
    lumora::FaceModel& face() { return *qobject_cast<lumora::FaceModel*>(lockScreen_.face()); }
    void wait(const std::function<bool()>& there, const char* what) {
        const QDeadlineTimer deadline(30'000);
        while (!there()) {
            if (deadline.hasExpired()) throw std::runtime_error(std::string("no sign of ") + what);
            shown_.nextFrame(20);
        }
    }

    settings::Shell shell_;
    settings::LockScreen lockScreen_{true};
    settings::History history_{shell_, &lockScreen_, {}};
    bench::ItemWindow shown_;
    QQuickItem* slider_ = nullptr;
};

/// The 95th percentile of the steps from one end to the other and back, on the surface on which it is largest.
void ScrubHistory(benchmark::State& state) {
    static const FullTweak tweak;
    static ScrubWindow& window = *new ScrubWindow; // the toolkit goes first
    for ([[maybe_unused]] auto _ : state) {
        double dearest = 0;
        for (const auto& [surface, name] :
             {std::pair(Surface::notices, "notices"), std::pair(Surface::apps, "apps"),
              std::pair(Surface::appView, "App View"), std::pair(Surface::passcode, "passcode")}) {
            window.show(surface);
            std::vector<double> times;
            for (int i = kSteps - 1; i >= 0; --i)
                times.push_back(window.step(kRecords * i / kSteps));
            for (int i = 1; i <= kSteps; ++i)
                times.push_back(window.step(kRecords * i / kSteps));
            const auto tail = times.begin() + std::ptrdiff_t(times.size() * 95 / 100);
            std::ranges::nth_element(times, tail);
            state.counters[name] = *tail * 1e3;
            if (*tail <= dearest) continue;
            dearest = *tail;
            state.SetLabel(name);
        }
        state.SetIterationTime(dearest);
    }
}
BENCHMARK(ScrubHistory)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(1)->Repetitions(3);

} // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_QUICK_BACKEND", "software");
    qputenv("QSG_RENDER_LOOP", "basic");
    const QGuiApplication application(argc, argv);
    QGuiApplication::setFont(QFont(QStringLiteral("Inter")));
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
