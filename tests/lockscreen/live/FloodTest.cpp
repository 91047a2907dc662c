#include "tests/lockscreen/live/OpenFace.h"
#include "tests/soak/Ledger.h"
#include "tests/tweak/Messages.h"
#include "tests/tweak/Program.h"
#include "tests/tweak/Sandbox.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <thread>

using namespace tests;
using namespace std::chrono_literals;
using testing::IsEmpty;

namespace {

constexpr int kWarmingUp = 1'000;
constexpr int kChanges = 10'000; // in ten seconds, where the machine is fast enough
constexpr auto kApart = 1ms;
constexpr int kCountings = 10;

/// The same thousand texts again and again, since what is measured of texts is kept up to a bound; and a last one.
std::string textOf(int number) {
    return "Change " + std::to_string(number < kWarmingUp + kChanges ? number % kWarmingUp : number);
}

/// Sends changes from another thread, while this one draws.
class Flood {
  public:
    Flood(int first, int last)
        : thread_([=, this] {
              auto next = std::chrono::steady_clock::now();
              for (int number = first; number <= last; ++number) {
                  std::this_thread::sleep_until(next += kApart);
                  if (!change("kLSDateSubtitle", textOf(number)).empty()) ++refused_;
                  sent_ = number;
              }
          }) {}
    ~Flood() { thread_.join(); }
    Flood(const Flood&) = delete;
    Flood& operator=(const Flood&) = delete;

    [[nodiscard]] int sent() const { return sent_; }
    [[nodiscard]] int refused() const { return refused_; }

  private:
    std::atomic<int> sent_ = 0;
    std::atomic<int> refused_ = 0;
    std::thread thread_; ///< the last one, as it begins at once
};

} // namespace

TEST(FloodedFace, EndsWithTheLastOfTenThousandChangesAndGrowsByNoneOfThem) {
    const Sandbox sandbox;
    const RunningTweak tweak({LUMORA_TWEAK, "--settings", sandbox.settings()});
    ASSERT_EQ(change("kTweakEnabled", true), "");
    OpenFace face;
    face.live().follow();
    const auto comesToShow = [&](int number) { return comes([&] { return face.subtitle() == textOf(number); }); };

    const Flood warm(1, kWarmingUp);
    ASSERT_TRUE(comesToShow(kWarmingUp));
    Ledger ledger("lock screen", {.grownKb = 4096, .grownHeapKb = 512, .busy = 8});
    const Census first = Census::ofSelf();
    ledger.begin(first);
    const int drawn = face.frames();
    const int last = kWarmingUp + kChanges;
    const Flood flood(kWarmingUp + 1, last);
    for (int counting = 1; counting < kCountings; ++counting) {
        ASSERT_TRUE(comes([&] { return flood.sent() >= kWarmingUp + kChanges * counting / kCountings; }));
        ledger.note(Census::ofSelf());
    }
    ASSERT_TRUE(comesToShow(last));
    ASSERT_TRUE(comes([&] { return flood.sent() == last; }));
    // The connection that has brought the last one is closed a moment later.
    (void)comes([&] { return Census::ofSelf()[Census::descriptors] <= first[Census::descriptors]; });
    ledger.end(Census::ofSelf());
    EXPECT_EQ(flood.refused(), 0);
    EXPECT_GT(face.frames() - drawn, kCountings) << "it draws meanwhile";
    EXPECT_THAT(ledger.complaints(), IsEmpty()) << ledger.table();
}
