// Appending to lists one element at a time, against std::vector.

#include "foundation/KW_List.h"

#include <benchmark/benchmark.h>
#include <memory>
#include <vector>

namespace {

template <int Bytes>
struct Record {
    int values[Bytes / 4];
};

constexpr long kAppends = 100'000;

template <int Bytes>
struct Ours {
    KW_List<Record<Bytes>> list;
    void append(const Record<Bytes>& record) { list.AddData(record, -1); }
};

template <int Bytes>
struct Vector {
    std::vector<Record<Bytes>> list;
    void append(const Record<Bytes>& record) { list.push_back(record); }
};

// `appends` elements in all, shared out among so many lists in turn.
template <typename Container, int Bytes>
void append(benchmark::State& state, long appends, long lists) {
    for (auto _ : state) {
        const std::unique_ptr<Container[]> containers(new Container[static_cast<std::size_t>(lists)]);
        Record<Bytes> record{};
        for (long i = 0; i < appends; i += lists) {
            record.values[0] = static_cast<int>(i);
            for (long k = 0; k < lists; ++k)
                containers[static_cast<std::size_t>(k)].append(record);
        }
        benchmark::DoNotOptimize(containers.get());
        benchmark::ClobberMemory();
    }
}

template <int Bytes>
void registerAppends() {
    for (const long lists : {1L, 100L}) {
        const std::string name = "Append 100000 of " + std::to_string(Bytes) + " bytes/" +
                                 (lists == 1 ? "one list/" : "100 lists in turn/");
        benchmark::RegisterBenchmark((name + "ours").c_str(), append<Ours<Bytes>, Bytes>, kAppends, lists);
        benchmark::RegisterBenchmark((name + "vector").c_str(), append<Vector<Bytes>, Bytes>, kAppends,
                                     lists);
    }
    // Twice the elements: the ratio is that of this time to the time of half as many.
    const std::string name = "Append twice as many of " + std::to_string(Bytes) + " bytes/one list/";
    benchmark::RegisterBenchmark((name + "ours").c_str(), append<Ours<Bytes>, Bytes>, 2 * kAppends, 1L);
    benchmark::RegisterBenchmark((name + "half as many").c_str(), append<Ours<Bytes>, Bytes>, kAppends, 1L);
}

const bool kRegistered = [] {
    registerAppends<12>();
    registerAppends<24>();
    return true;
}();

}  // namespace
