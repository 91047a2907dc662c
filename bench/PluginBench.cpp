// Discovery of 1,000 plug-ins, the first time and once they are known to be safe, against the same files loaded with
// bare dlopen() and dlsym().

#include "lists/PluginDiscovery.h"
#include "platform/foundation/FileDescriptor.h"
#include "tests/lists/PluginFolder.h"

#include <benchmark/benchmark.h>
#include <dlfcn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <string>

namespace {

constexpr std::size_t kPlugins = 1000;

const tests::PluginFolder& thousandPlugins() {
    static const tests::PluginFolder folder;
    static const bool filled = [] {
        for (std::size_t i = 0; i < kPlugins; ++i)
            folder.add("Clock" + std::to_string(i) + ".bundle", "ClockView", "ClockView");
        return true;
    }();
    benchmark::DoNotOptimize(filled);
    return folder;
}

/// Loads everything and says how much of it was good.
using Load = std::size_t (*)();

std::size_t discover() {
    return lumora::discoverPlugins(false).size();
}

std::size_t loadBare() {
    std::size_t loaded = 0;
    for (const auto& entry : std::filesystem::directory_iterator(lumora::pluginFolder())) {
        void* code = ::dlopen((entry.path() / "Code").c_str(), RTLD_NOW | RTLD_LOCAL);
        if (code && ::dlsym(code, LUMORA_PRINCIPAL_CLASS_SYMBOL "ClockView")) ++loaded;
    }
    return loaded;
}

/// Code stays once it is loaded, so each round is measured in a process of its own.
void measure(benchmark::State& state, Load load, void (*prepare)()) {
    thousandPlugins();
    for ([[maybe_unused]] auto _ : state) {
        prepare();
        platform::Pipe pipe;
        if (!pipe) return state.SkipWithError("no pipe");
        const pid_t child = ::fork();
        if (child == 0) {
            const auto start = std::chrono::steady_clock::now();
            const std::size_t loaded = load();
            const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
            const double told = loaded == kPlugins ? seconds : -1;
            ::_exit(::write(pipe.writing.number(), &told, sizeof told) == sizeof told ? 0 : 1);
        }
        double seconds = -1;
        pipe.writing.close();
        const bool heard = ::read(pipe.reading.number(), &seconds, sizeof seconds) == sizeof seconds;
        ::waitpid(child, nullptr, 0);
        if (!heard || seconds < 0) return state.SkipWithError("not all were loaded");
        state.SetIterationTime(seconds);
    }
}

/// Where the verdicts are kept from now on.
std::filesystem::path useCache(const char* name) {
    std::filesystem::path cache = thousandPlugins().root() / name;
    ::setenv("XDG_CACHE_HOME", cache.c_str(), 1);
    return cache;
}

void DiscoverThousandPlugins(benchmark::State& state) {
    measure(state, discover, [] {
        if (std::filesystem::exists(useCache("known"))) return;
        const pid_t child = ::fork();
        if (child == 0) ::_exit(discover() == kPlugins ? 0 : 1);
        ::waitpid(child, nullptr, 0);
    });
}
BENCHMARK(DiscoverThousandPlugins)->UseManualTime()->Unit(benchmark::kMillisecond);

void DiscoverThousandPluginsFirst(benchmark::State& state) {
    measure(state, discover, [] { std::filesystem::remove_all(useCache("new")); });
}
BENCHMARK(DiscoverThousandPluginsFirst)->UseManualTime()->Unit(benchmark::kMillisecond);

void LoadThousandPluginsBare(benchmark::State& state) {
    measure(state, loadBare, [] {});
}
BENCHMARK(LoadThousandPluginsBare)->UseManualTime()->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
