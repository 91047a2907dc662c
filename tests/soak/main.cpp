// Soak: the work of months, played fast, on the real bundle in the host of Settings and a real tweak. What both
// processes hold must stay flat.
//
//     lumora_soak [FACTOR]    # 1: a million messages, ten thousand openings of pages, an hour of dragging a colour
//
// Prints what was held, and exits with 1 when it was not flat or when messages were lost.

#include "link/Messages.h"
#include "link/Notify.h"
#include "link/PreferenceKeys.h"
#include "platform/foundation/DeviceRoot.h"
#include "platform/messaging/Dispatch.h"
#include "platform/preferences/PSListController.h"
#include "settings/host/Host.h"
#include "tests/soak/Ledger.h"
#include "tests/soak/SoakedTweak.h"
#include "tests/support/PortsFolder.h"
#include "tests/support/Waiting.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <future>
#include <poll.h>
#include <string>
#include <utility>
#include <vector>

using namespace platform;
using namespace settings;
using tests::Census;
using tests::Ledger;

namespace {

constexpr long kMessages = 1'000'000;
constexpr long kOpenings = 10'000;
constexpr long kTouches = 120L * 3600; // an hour at 120 Hz

/// Of each stage; what is done before the first counting makes everything warm: pools, caches, the allocator.
constexpr int kCountings = 20;
constexpr long kWarmingUp = 20; // one part in so many, and so many batches at least

/// At most so many messages are on their way at a time.
constexpr long kBatch = 16;

/// At any factor a descriptor or thread shows that is not given back. In full, the heap of the settings process shows a
/// byte lost with every fourth message, and 26 with each opened page. The tweak's heap is unknown: of what it loses
/// with each message, four bytes show, as resident memory.
constexpr Ledger::Tolerance kOwn{.grownKb = 8192, .grownHeapKb = 256, .busy = 2 * kBatch + 8};
constexpr Ledger::Tolerance kOfTweak{.grownKb = 4096, .grownHeapKb = 0, .busy = kBatch + 8};

/// Messages may be lost, in silence, when a machine stands still for a second: all that are on their way. That may
/// happen once at any factor, and else to one message in so many.
constexpr long kOneLostIn = 1000;

long mayBeLost(long sent) {
    return sent / kOneLostIn + kBatch;
}

constexpr std::chrono::seconds kPatience(60);

/// Every kind of page that the bundle has but the root page: that one writes a line to the system's log each time,
/// which would fill it.
constexpr std::array kPages{"AppsController",        "AppsListController",        "AutoUnlockController",
                            "AUAppsListController",  "LSSettingsController",      "LSPasscodeSettings",
                            "LSDateViewSettings",    "ColorPickerController",     "FontViewController",
                            "PluginsListController", "PluginsListViewController", "ChangeLogController"};

/// The host of Settings with the page on top as it was shown last.
class Application {
  public:
    Application() : host_(*new Host([this](const StackSnapshot& stack) { shown_ = stack; })) {}

    bool launch() {
        std::promise<bool> launched;
        host_.launch({platform::standardBundle(), "ChangeLogController", {390, 760}},
                     [&](const Result<void>& result) { launched.set_value(static_cast<bool>(result)); });
        auto result = launched.get_future();
        return result.wait_for(kPatience) == std::future_status::ready && result.get();
    }
    /// Does it on the main thread, with the page on top.
    void post(std::function<void(Navigation&, const PageSnapshot&)> work) {
        host_.post([this, work = std::move(work)](Navigation& navigation) { work(navigation, *shown_.pages.back()); });
    }
    void open(const std::string& page) {
        post([page](Navigation& navigation, const PageSnapshot&) { navigation.open(NSClassFromString(page), page); });
    }
    void goBack() {
        post([](Navigation& navigation, const PageSnapshot& page) { navigation.back(page.id); });
    }
    /// Until everything that was posted is done and every message is out.
    void catchUp() { host_.finish(kPatience); }
    /// On the main thread or when that is at rest.
    [[nodiscard]] const StackSnapshot& shown() const { return shown_; }

  private:
    StackSnapshot shown_; // on the main thread
    Host& host_;          // never destroyed, and so must this be
};

/// One kind of work, counted at its two ends at rest and now and then between.
class Stage {
  public:
    /// Begins each piece of the work by its number, and waits after each batch until all that have begun are done.
    Stage(std::string name, const tests::SoakedTweak& tweak, std::function<void(long)> begin,
          std::function<void()> catchUp)
        : name_(std::move(name)), tweak_(tweak), begin_(std::move(begin)), catchUp_(std::move(catchUp)) {}

    /// Whether it was flat.
    bool run(long total) {
        const auto begun = std::chrono::steady_clock::now();
        const long warm = std::max(total / kWarmingUp, std::min(total / 2, kWarmingUp * kBatch));
        work(0, warm);
        rest();
        own_.begin(Census::ofSelf());
        ofTweak_.begin(Census::of(tweak_.id()));
        long done = warm;
        for (int counting = 1; counting <= kCountings; ++counting) {
            const long next = warm + (total - warm) * counting / kCountings;
            work(std::exchange(done, next), next);
            own_.note(Census::ofSelf());
            ofTweak_.note(Census::of(tweak_.id()));
        }
        rest();
        own_.end(Census::ofSelf());
        ofTweak_.end(Census::of(tweak_.id()));
        const auto took = std::chrono::steady_clock::now() - begun;
        return report(total, static_cast<long>(std::chrono::duration_cast<std::chrono::seconds>(took).count()));
    }

  private:
    void work(long from, long to) const {
        for (long number = from; number < to; ++number) {
            begin_(number);
            if (number == to - 1 || (number - from) % kBatch == kBatch - 1) catchUp_();
        }
    }

    /// The pool lets threads go that had nothing to do for a while: all but one, which looks for work.
    static void rest() {
        long before = 0;
        for (int same = 0; same < 25;) { // 2.5 s
            ::poll(nullptr, 0, 100);
            const long now = Census::ofSelf()[Census::threads];
            same = now == std::exchange(before, now) ? same + 1 : 0;
        }
    }

    [[nodiscard]] bool report(long total, long seconds) const {
        std::printf("%s: %ld in %ld s\n  %-12s %-16s %10s %10s %10s\n%s%s", name_.c_str(), total, seconds, "process",
                    "held", "first", "last", "largest", own_.table().c_str(), ofTweak_.table().c_str());
        bool flat = true;
        for (const Ledger* ledger : {&own_, &ofTweak_}) {
            for (const std::string& complaint : ledger->complaints()) {
                std::printf("  NOT FLAT: %s\n", complaint.c_str());
                flat = false;
            }
        }
        std::fflush(stdout);
        return flat;
    }

    std::string name_;
    const tests::SoakedTweak& tweak_;
    std::function<void(long)> begin_;
    std::function<void()> catchUp_;
    Ledger own_{"settings", kOwn};
    Ledger ofTweak_{"tweak", kOfTweak};
};

bool arrived(const char* what, long sent, long got) {
    std::printf("  %s: %ld sent, %ld arrived\n", what, sent, got);
    if (got > sent || sent - got > mayBeLost(sent)) {
        std::printf("  LOST: more than %ld, or more arrived than were sent\n", mayBeLost(sent));
        return false;
    }
    return true;
}

/// Requests and changes in turn, each answered.
bool exchangeMessages(const tests::SoakedTweak& tweak, long total) {
    std::atomic<long> answered{0};
    const auto count = [&answered](const std::optional<Data>&) { ++answered; };
    const auto send = [&](long number) {
        if (number % 2 == 0) {
            lumora::notify(lumora::kRequestTweakSettings, Value(), count);
        } else {
            const Value seconds = static_cast<std::int64_t>(number);
            lumora::notify(lumora::kUpdateSettings, lumora::changeOf(lumora::kSleepTime, seconds), count);
        }
    };
    Stage stage("messages", tweak, send, [] { dispatch_wait_until_idle(kPatience); });
    const bool flat = stage.run(total);
    return arrived("answers", total, answered) && flat;
}

/// Each page in turn, opened and left, and its changes of settings awaited.
bool openPages(const tests::SoakedTweak& tweak, Application& application, long total) {
    std::atomic<long> opened{0};
    const auto open = [&](long number) {
        const std::string page = kPages.at(static_cast<std::size_t>(number) % kPages.size());
        application.open(page);
        application.post([&opened, page](Navigation&, const PageSnapshot& top) {
            const bool shown = top.className == page && (top.hostsView ? top.view != nullptr : !top.rows.empty());
            opened += shown ? 1 : 0;
        });
        application.goBack();
    };
    Stage stage("page openings", tweak, open, [&] { application.catchUp(); });
    const bool flat = stage.run(total);
    std::printf("  pages: %ld opened, %ld shown\n", total, opened.load());
    return flat && opened == total;
}

/// A finger's way over the control, in strokes of two seconds: two on the field of hues and saturations, then one along
/// the bar. No two places that follow one another are the same.
class Finger {
  public:
    /// The two elements of the page on top that run along an axis.
    explicit Finger(const PageSnapshot& page) {
        for (const ElementSnapshot& element : page.elements)
            if (!element.axes.empty()) areas_.push_back(element.frame);
    }
    [[nodiscard]] bool knowsItsWay() const { return areas_.size() == 2; }

    [[nodiscard]] static UITouchPhase phase(long number) {
        const long step = number % kStroke;
        return step == 0 ? UITouchPhase::began : step == kStroke - 1 ? UITouchPhase::ended : UITouchPhase::moved;
    }
    [[nodiscard]] UITouchRouter::Point at(long number) const {
        const CGRect& area = areas_[number / kStroke % 3 == 2 ? 1 : 0];
        const auto time = static_cast<double>(number);
        const CGPoint place{area.origin.x + area.size.width * (0.5 + 0.45 * std::sin(time * 0.0131)),
                            area.origin.y + area.size.height * (0.5 + 0.45 * std::cos(time * 0.0171))};
        return {0, phase(number), place};
    }

  private:
    static constexpr long kStroke = 240;
    std::vector<CGRect> areas_;
};

bool dragColors(const tests::SoakedTweak& tweak, Application& application, long total) {
    application.open("ColorPickerController");
    application.catchUp();
    const Finger finger(*application.shown().pages.back());
    if (!finger.knowsItsWay()) {
        std::puts("  the colour page has not the two parts that are dragged in");
        return false;
    }
    const long before = tweak.changes();
    long sent = 0;
    const auto touch = [&](long number) {
        sent += Finger::phase(number) == UITouchPhase::ended ? 0 : 1; // where it was already
        application.post([point = finger.at(number)](Navigation& navigation, const PageSnapshot& page) {
            navigation.handle(page.id, Touched{{point}});
        });
    };
    Stage stage("events of a dragged colour", tweak, touch, [&] { application.catchUp(); });
    const bool flat = stage.run(total);
    application.goBack();
    application.catchUp();
    tests::eventually([&] { return tweak.changes() - before >= sent - mayBeLost(sent); });
    return arrived("colours", sent, tweak.changes() - before) && flat;
}

} // namespace

int main(int count, char** words) {
    const double factor = count > 1 ? std::strtod(words[1], nullptr) : 1;
    if (count > 2 || !(factor > 0 && factor <= 100)) {
        std::fputs("lumora_soak [FACTOR]: a number above 0, at most 100\n", stderr);
        return 2;
    }
    const auto times = [factor](long number) { return std::max(std::lround(factor * double(number)), 2 * kBatch); };

    const tests::PortsFolder folder;
    setDeviceRoot(LUMORA_TEST_ROOT);
    const tests::SoakedTweak tweak(LUMORA_TWEAK, folder.path() / "settings.plist");
    auto& application = *new Application; // the main thread is in it to the end
    if (!tests::eventually([&] { return tweak.isReady(); }) || !application.launch()) {
        std::fputs("lumora_soak: the tweak or the bundle does not start\n", stderr);
        return 1;
    }
    const bool exchanged = exchangeMessages(tweak, times(kMessages));
    const bool opened = openPages(tweak, application, times(kOpenings));
    const bool dragged = dragColors(tweak, application, times(kTouches));
    std::puts(exchanged && opened && dragged ? "flat" : "NOT FLAT, or incomplete");
    return exchanged && opened && dragged ? 0 : 1;
}
