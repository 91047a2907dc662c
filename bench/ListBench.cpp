// The page of applications built from 10,000 of them, against what no such page can do without: the library's own call
// and a sort of the names by ICU.

#include "applist/AppList.h"
#include "lists/AppsListView.h"

#include "tests/pages/RecordingTweak.h"
#include "tests/support/DeviceFolder.h"

#include <benchmark/benchmark.h>
#include <unicode/coll.h>

#include <algorithm>
#include <dlfcn.h>
#include <random>

namespace {

constexpr int kCount = 10000;
constexpr const char* kFolder = "/Library/MobileSubstrate/DynamicLibraries/";

/// Names of one to three words, in no order.
std::string tenThousandApplications() {
    std::mt19937 random(1);
    const auto word = [&] {
        std::string letters(3 + random() % 7, ' ');
        for (char& letter : letters)
            letter = static_cast<char>('a' + random() % 26);
        if (random() % 2 == 0) letters[0] = static_cast<char>(letters[0] - 'a' + 'A');
        return letters;
    };
    std::string lines;
    for (int i = 0; i < kCount; ++i) {
        lines += "org.example.application" + std::to_string(i) + "\t" + word();
        for (auto words = random() % 3; words > 0; --words)
            lines += " " + word();
        lines += "\n";
    }
    return lines;
}

/// A device with these applications, and a tweak that answers.
const tests::DeviceFolder& device() {
    static const tests::DeviceFolder device;
    static const bool ready = [] {
        device.install(LUMORA_FAKE_APP_LIST, std::string(kFolder) + "AppList.dylib");
        device.write(tenThousandApplications(), std::string(kFolder) + "applications.txt");
        tests::RecordingTweak::shared().setSettings(platform::Dictionary{});
        return true;
    }();
    benchmark::DoNotOptimize(ready);
    return device;
}

void BuildAppsList(benchmark::State& state) {
    (void)device();
    const auto open = platform::make<lumora::AppsListView>(platform::CGRectMake(0, 0, 390, 760));
    for (auto _ : state) {
        auto view = platform::make<lumora::AppsListView>(platform::CGRectMake(0, 0, 390, 760));
        state.PauseTiming(); // what is measured is the building
        if (view->disabled().size() != kCount) state.SkipWithError("not all applications are there");
        view.reset();
        state.ResumeTiming();
    }
}
BENCHMARK(BuildAppsList)->Unit(benchmark::kMillisecond);

void ListAndSort(benchmark::State& state) {
    const auto library = device().path() / (std::string(kFolder + 1) + "AppList.dylib");
    void* handle = dlopen(library.c_str(), RTLD_NOW);
    const auto* table = static_cast<const ALApplicationListClass*>(dlsym(handle, AL_APPLICATION_LIST_SYMBOL));
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<icu::Collator> collator(icu::Collator::createInstance(icu::Locale::getRoot(), status));
    collator->setStrength(icu::Collator::SECONDARY);
    for (auto _ : state) {
        std::vector<std::string> names;
        table->applications(
            table->sharedApplicationList(),
            [](const char* /*identifier*/, const char* name, void* into) {
                static_cast<std::vector<std::string>*>(into)->emplace_back(name);
            },
            &names);
        std::sort(names.begin(), names.end(), [&](const std::string& a, const std::string& b) {
            UErrorCode failed = U_ZERO_ERROR;
            return collator->compareUTF8(a, b, failed) == UCOL_LESS;
        });
        state.PauseTiming();
        if (names.size() != kCount) state.SkipWithError("not all applications are there");
        names = {};
        state.ResumeTiming();
    }
    dlclose(handle);
}
BENCHMARK(ListAndSort)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
