// Reading a full history, and dragging a slider through it.

#include "history/Timeline.h"

#include <benchmark/benchmark.h>

#include <chrono>
#include <random>
#include <string>
#include <vector>

using lumora::ChangeRecord;
using lumora::Timeline;
using platform::Dictionary;
using platform::Value;

namespace {

constexpr int kRecords = 5'000;
constexpr int kSettings = 50;

/// Switches, numbers, texts and lists, as the pages set them.
Value valueOf(int key, unsigned chance) {
    switch (key % 4) {
    case 0:
        return chance % 2 == 0;
    case 1:
        return static_cast<double>(chance % 100) / 7;
    case 2:
        return "a text of " + std::to_string(chance % 1000);
    default:
        return platform::List{"com.example.clock", "com.example.notes", std::to_string(chance % 1000)};
    }
}

struct Full {
    Full() {
        std::mt19937 random(1);
        for (int i = 1; i <= kRecords; ++i) {
            const int number = static_cast<int>(random() % kSettings);
            const std::string key = "kSomeSetting" + std::to_string(number);
            const Value* was = present.find(key);
            const Value now = valueOf(number, static_cast<unsigned>(random()));
            const auto time = lumora::Moment(std::chrono::hours(500'000) + std::chrono::minutes(i));
            records.push_back({i, i, time, key, was ? std::optional(*was) : std::nullopt, now});
            present.set(key, now);
        }
        for (const ChangeRecord& record : records)
            text += lumora::lineOf(record).value();
    }

    std::vector<ChangeRecord> records;
    Dictionary present;
    std::string text;
};

const Full& full() {
    static const Full made;
    return made;
}

void ReadFullHistory(benchmark::State& state) {
    for ([[maybe_unused]] auto _ : state)
        benchmark::DoNotOptimize(lumora::readRecords(full().text));
}

void PrepareTimeline(benchmark::State& state) {
    for ([[maybe_unused]] auto _ : state)
        benchmark::DoNotOptimize(Timeline(full().records, full().present, {}));
}

/// From one end of the history to the other, as far as a slider can go from one frame to the next.
void MoveThroughHistory(benchmark::State& state) {
    const Timeline timeline(full().records, full().present, {});
    lumora::TimelineCursor cursor(timeline);
    std::size_t place = 0;
    for ([[maybe_unused]] auto _ : state) {
        benchmark::DoNotOptimize(cursor.moveTo(place));
        place = kRecords - place;
    }
}

/// To and fro by a few records, as a hand does mostly.
void MoveAlongHistory(benchmark::State& state) {
    const Timeline timeline(full().records, full().present, {});
    lumora::TimelineCursor cursor(timeline);
    std::size_t place = 0;
    for ([[maybe_unused]] auto _ : state) {
        place = (place + 8) % kRecords;
        benchmark::DoNotOptimize(cursor.moveTo(place));
    }
}

} // namespace

BENCHMARK(ReadFullHistory)->Unit(benchmark::kMillisecond);
BENCHMARK(PrepareTimeline)->Unit(benchmark::kMillisecond);
BENCHMARK(MoveThroughHistory)->Unit(benchmark::kMicrosecond);
BENCHMARK(MoveAlongHistory)->Unit(benchmark::kMicrosecond);

BENCHMARK_MAIN();
