// What loading the add-on costs: from the opening of the bundle to the end of Initialize.

#include "host/Host.h"
#include "platform/FileSystem.h"
#include "platform/host/SettingsFolder.h"

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <filesystem>
#include <string>

namespace {

/// A data folder with a stored language, as a user's second session finds it.
class UsedDataFolder {
public:
    UsedDataFolder() : path_((std::filesystem::temp_directory_path() / "tessaro-bench-XXXXXX").string()) {
        if (mkdtemp(path_.data()) == nullptr) std::abort();
        platform::setSettingsFolder(IO::Location::FromPosixPath(path_));
    }
    ~UsedDataFolder() { std::filesystem::remove_all(path_); }
    UsedDataFolder(const UsedDataFolder&) = delete;
    UsedDataFolder& operator=(const UsedDataFolder&) = delete;

private:
    std::string path_;
};

constexpr const char* kBundle = TESSARO_BENCH_BUNDLE;

void loadOnce(benchmark::State& state, host::Host& host) {
    const auto loaded = host.load(kBundle);
    if (const auto* addOn = std::get_if<host::AddOn*>(&loaded)) {
        state.PauseTiming();
        host.unload(**addOn);
        state.ResumeTiming();
    } else {
        state.SkipWithError("the bundle was not loaded");
    }
}

/// The first loading in a process: the linker, the resources and the encodings are met for the first time.
void firstLoad(benchmark::State& state) {
    const UsedDataFolder folder;
    host::Host host;
    for (auto _ : state)
        loadOnce(state, host);
}
BENCHMARK(firstLoad)->Name("the first loading in a process")->Iterations(1)->Unit(benchmark::kMicrosecond);

void laterLoad(benchmark::State& state) {
    const UsedDataFolder folder;
    host::Host host;
    for (auto _ : state)
        loadOnce(state, host);
}
BENCHMARK(laterLoad)->Name("a later loading")->Unit(benchmark::kMicrosecond);

/// Of that: the shared object, its module-wide objects, the index of its resources, the exported record.
void openBundle(benchmark::State& state) {
    for (auto _ : state) {
        auto bundle = host::Bundle::open(kBundle);
        state.PauseTiming();
        bundle = host::LoadError{};
        state.ResumeTiming();
    }
}
BENCHMARK(openBundle)
    ->Name("of that: shared object, its objects, index of its resources")
    ->Unit(benchmark::kMicrosecond);

/// Of that: the three entry points, with the settings file and the menu's texts.
void callEntryPoints(benchmark::State& state) {
    const UsedDataFolder folder;
    host::Host host;
    for (auto _ : state) {
        state.PauseTiming();
        // A second handle keeps the shared object in memory while the host loads it again.
        auto kept = host::Bundle::open(kBundle);
        state.ResumeTiming();
        loadOnce(state, host);
        state.PauseTiming();
        kept = host::LoadError{};
        state.ResumeTiming();
    }
}
BENCHMARK(callEntryPoints)
    ->Name("of that: entry points, settings file, texts of the menu")
    ->Unit(benchmark::kMicrosecond);

}  // namespace
