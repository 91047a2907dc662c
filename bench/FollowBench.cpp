// How long the tweak takes to answer a change: alone, without recording it, and while it tells 16 followers of each one.

#include "tests/support/RawSocket.h"
#include "tests/support/ServedPort.h"
#include "tests/tweak/Messages.h"
#include "tests/tweak/Program.h"
#include "tests/tweak/Sandbox.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <list>
#include <string>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>
#include <utility>
#include <vector>

using namespace tests;

namespace {

using Clock = std::chrono::steady_clock;

constexpr int kFollowers = 16;
constexpr int kStuck = 4; ///< of them, which take messages and never answer
constexpr int kChanges = 50;
constexpr std::chrono::milliseconds kApart(20);

std::string portOf(int number) {
    return "followers/" + std::to_string(::getpid()) + "-" + std::to_string(number);
}

/// Asks to be told, anew: a follower that has failed too often is forgotten.
bool follow(int number) {
    const auto body = platform::NSKeyedArchiver::archivedDataWithRootObject(
        lumora::messageWith(platform::Dictionary{{lumora::kPortEntry, portOf(number)}}));
    std::optional<platform::Data> reply;
    return send(lumora::kFollowSettings, body, reply) == platform::kCFMessagePortSuccess && reply;
}

/// The median of some changes in a row.
double answer() {
    std::vector<double> samples;
    auto next = Clock::now();
    for (int i = 0; i < kChanges; ++i) {
        std::this_thread::sleep_until(next += kApart);
        const auto begin = Clock::now();
        if (!change("kSleepTime", 10 + i).empty()) return 0;
        samples.push_back(std::chrono::duration<double>(Clock::now() - begin).count());
    }
    std::ranges::nth_element(samples, samples.begin() + kChanges / 2);
    return samples[kChanges / 2];
}

void measure(benchmark::State& state, int followers, const std::vector<std::string>& options = {}) {
    const Sandbox sandbox;
    std::vector<std::string> command{LUMORA_TWEAK, "--settings", sandbox.settings()};
    command.insert(command.end(), options.begin(), options.end());
    const RunningTweak tweak(std::move(command));
    std::list<ServedPort> listening;
    std::list<RawSocket> stuck;
    if (followers > 0) std::filesystem::create_directories(sandbox.ports() / "com.nevo.lumora/followers");
    for (int number = 1; number <= followers; ++number) {
        const std::string name = lumora::portName(portOf(number));
        if (number <= kStuck)
            stuck.push_back(RawSocket::listeningAt(sandbox.ports() / name, SOMAXCONN));
        else
            listening.emplace_back(name, [](auto&, auto, const auto&) { return std::nullopt; });
    }
    for ([[maybe_unused]] auto _ : state) {
        bool followed = true;
        for (int number = 1; number <= followers; ++number)
            followed = follow(number) && followed;
        const double seconds = answer();
        if (!followed || seconds == 0) state.SkipWithError("the tweak refuses");
        state.SetIterationTime(seconds);
    }
}

void ChangeAnswer(benchmark::State& state) {
    measure(state, 0);
}
void ChangeAnswerWithoutHistory(benchmark::State& state) {
    measure(state, 0, {"--no-history"});
}
void ChangeAnswerWithFollowers(benchmark::State& state) {
    measure(state, kFollowers);
}

} // namespace

BENCHMARK(ChangeAnswer)->UseManualTime()->Iterations(1)->Unit(benchmark::kMicrosecond);
BENCHMARK(ChangeAnswerWithoutHistory)->UseManualTime()->Iterations(1)->Unit(benchmark::kMicrosecond);
BENCHMARK(ChangeAnswerWithFollowers)->UseManualTime()->Iterations(1)->Unit(benchmark::kMicrosecond);

BENCHMARK_MAIN();
