// Searching an index of 10,000 rows, against looking for each word in each row's texts as they stand in memory; and what
// the index of the sample device costs to read from the cache and to make.

#include "search/Folding.h"
#include "search/IndexChild.h"
#include "search/IndexFile.h"
#include "search/Search.h"

#include "tests/support/TemporaryFolder.h"

#include <benchmark/benchmark.h>

#include <array>
#include <iterator>
#include <random>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

constexpr std::size_t kRows = 10000;
constexpr std::size_t kRowsOfPage = 50;
constexpr std::array kWordsOfRows{
    "Blur",   "Color",     "Opacity", "Passcode",     "View",   "Enable",   "Hide",           "Button",
    "Badges", "Labels",    "Icon",    "Size",         "Date",   "Subtitle", "Unlock",         "Screen",
    "Lock",   "Battery",   "Status",  "Bar",          "Camera", "Grabber",  "Slide",          "Font",
    "Offset", "Spacing",   "Tint",    "Notification", "Sleep",  "After",    "Schl\u00FCssel", "Gr\u00F6\u00DFe",
    "Farbe",  "\u00C9cran"};

/// What people type, of one letter and of many words, found in most rows and in few.
constexpr std::array kQueries{"e", "bl", "blur", "blur color", "passcode view hid", "grosse farbe ecran", "kTest4711"};
constexpr std::array kQueriesWithMistakes{"opactiy", "notifcation sleep", "pascode vieww", "batery statos qqqq"};

search::Index tenThousandRows() {
    std::mt19937 random(1);
    const auto words = [&](std::size_t count) {
        std::string text;
        while (count-- > 0)
            text += (text.empty() ? "" : " ") + std::string(kWordsOfRows[random() % kWordsOfRows.size()]);
        return text;
    };
    std::vector<search::Page> pages{{"Root", "Lumora", std::nullopt, 0, "", ""}};
    std::vector<search::Entry> entries;
    for (std::size_t i = 0; i < kRows; ++i) {
        if (i % kRowsOfPage == 0) pages.push_back({"Page", words(2), random() % pages.size(), i, "", ""});
        search::Entry entry;
        entry.page = pages.size() - 1;
        entry.row = i % kRowsOfPage;
        entry.title = words(2 + random() % 3);
        entry.identifier = entry.key = "kTest" + std::to_string(i);
        entry.header = words(2);
        entry.footer = words(10);
        if (random() % 4 == 0) entry.options = {words(1), words(1), words(2)};
        entry.words = {words(1), words(2)};
        entries.push_back(std::move(entry));
    }
    return {std::move(pages), std::move(entries)};
}

const search::Index& rowsToSearch() {
    static const search::Index index = tenThousandRows();
    return index;
}

/// The dearest of the queries counts.
template<class Queries, class Search>
void searchEach(benchmark::State& state, const Queries& queries, const Search& search) {
    (void)rowsToSearch();
    for (auto _ : state) {
        double dearest = 0;
        for (const char* query : queries) {
            const auto begin = std::chrono::steady_clock::now();
            search(query);
            const std::chrono::duration<double> spent = std::chrono::steady_clock::now() - begin;
            dearest = std::max(dearest, spent.count());
        }
        state.SetIterationTime(dearest);
    }
}

void SearchTenThousand(benchmark::State& state) {
    searchEach(state, kQueries,
               [](const char* query) { benchmark::DoNotOptimize(search::find(rowsToSearch(), query, 50)); });
}
BENCHMARK(SearchTenThousand)->UseManualTime()->Unit(benchmark::kMicrosecond);

void SearchTenThousandForgiving(benchmark::State& state) {
    searchEach(state, kQueriesWithMistakes,
               [](const char* query) { benchmark::DoNotOptimize(search::find(rowsToSearch(), query, 50)); });
}
BENCHMARK(SearchTenThousandForgiving)->UseManualTime()->Unit(benchmark::kMicrosecond);

/// No ranks, no order, no places: whether each row has each word.
void PlainSearchTenThousand(benchmark::State& state) {
    static const std::vector<std::string> texts = [] {
        std::vector<std::string> all;
        for (const search::Entry& entry : rowsToSearch().entries())
            all.push_back(search::fold(entry.title + "\n" + rowsToSearch().pages()[entry.page].title + "\n" +
                                       entry.header + "\n" + entry.footer + "\n" + entry.identifier));
        return all;
    }();
    searchEach(state, kQueries, [](const char* query) {
        const std::string folded = search::fold(query);
        std::size_t found = 0;
        for (const std::string& text : texts) {
            bool all = true;
            for (const std::string_view word : search::wordsOf(folded))
                all = all && text.find(word) != std::string::npos;
            if (all) ++found;
        }
        benchmark::DoNotOptimize(found);
    });
}
BENCHMARK(PlainSearchTenThousand)->UseManualTime()->Unit(benchmark::kMicrosecond);

search::IndexOrder sampleDevice() {
    search::IndexOrder order;
    order.root = LUMORA_DEVICE_ROOT;
    order.bundle = order.root / "Library/PreferenceBundles/Lumora.bundle";
    return order;
}

void ReadKeptIndex(benchmark::State& state) {
    const tests::TemporaryFolder folder("index");
    const auto made = search::makeIndex(sampleDevice());
    if (!made || !search::writeIndex(folder.path() / "index", made.value().index, "stamp"))
        return state.SkipWithError("there is no index");
    for (auto _ : state)
        if (!search::readIndex(folder.path() / "index", "stamp")) state.SkipWithError("the index is not read");
}
BENCHMARK(ReadKeptIndex)->Unit(benchmark::kMicrosecond);

/// Processor time of the process that makes the index, and of those that it starts.
void MakeIndex(benchmark::State& state) {
    for (auto _ : state) {
        rusage before{};
        ::getrusage(RUSAGE_CHILDREN, &before);
        const auto made = search::makeIndex(sampleDevice());
        rusage after{};
        ::getrusage(RUSAGE_CHILDREN, &after);
        if (!made || !made.value().missing.empty()) return state.SkipWithError("there is no whole index");
        const auto seconds = [](const rusage& used) {
            return double(used.ru_utime.tv_sec + used.ru_stime.tv_sec) +
                   1e-6 * double(used.ru_utime.tv_usec + used.ru_stime.tv_usec);
        };
        state.SetIterationTime(seconds(after) - seconds(before));
    }
}
BENCHMARK(MakeIndex)->UseManualTime()->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
