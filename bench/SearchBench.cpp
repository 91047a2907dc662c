// Searching an index of 10,000 rows, against looking for each word in each row's texts as they stand in memory; and
// what the index of the sample device costs to read from the cache and to make.

#include "SearchedRows.h"
#include "search/Folding.h"
#include "search/IndexChild.h"
#include "search/IndexFile.h"
#include "search/Search.h"

#include "tests/support/TemporaryFolder.h"

#include <benchmark/benchmark.h>

#include <array>
#include <ctime>
#include <iterator>
#include <sys/resource.h>

namespace {

/// What people type, of one letter and of many words, found in most rows and in few.
constexpr std::array kQueries{"e", "bl", "blur", "blur color", "passcode view hid", "grosse farbe ecran", "kTest4711"};
constexpr std::array kQueriesWithMistakes{"opactiy", "notifcation sleep", "pascode vieww", "batery statos qqqq"};

const search::Index& rowsToSearch() {
    static const search::Index index = bench::tenThousandRows();
    return index;
}

/// Processor time of this thread, in seconds.
double spentByThread() {
    timespec spent{};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &spent);
    return double(spent.tv_sec) + 1e-9 * double(spent.tv_nsec);
}

/// The dearest of the queries counts, in processor time: of several, one is always interrupted.
template<class Queries, class Search>
void searchEach(benchmark::State& state, const Queries& queries, const Search& search) {
    (void)rowsToSearch();
    for (auto _ : state) {
        double dearest = 0;
        for (const char* query : queries) {
            const double before = spentByThread();
            search(query);
            dearest = std::max(dearest, spentByThread() - before);
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
