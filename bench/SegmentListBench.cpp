#include "files/FileManager.h"
#include "files/containers/SfiAreaRules.h"
#include "files/firmware/SegmentList.h"

#include <benchmark/benchmark.h>

#include <cstdlib>

namespace
{

constexpr std::uint32_t kStep = 16;

/// Segments in descending order; each reaches `size` bytes from its place in a grid of 16 bytes.
files::RecordOwner<FileData> descending(std::uint32_t count, std::uint32_t size,
                                        std::uint32_t base = 0)
{
    files::RecordOwner<FileData> record(new FileData);
    record->segments.reserve(count);
    for (std::uint32_t i = count; i-- > 0;) {
        auto *block = static_cast<std::uint8_t *>(std::calloc(size, 1));
        record->segments.push_back({base + i * kStep, size, block});
    }
    record->segmentCount = count;
    return record;
}

/// Argument 1 is the segment size: 16 touches the neighbour, 20 overlaps it.
void sortAndReduce(benchmark::State &state)
{
    FileManager manager;
    for (auto _ : state) {
        state.PauseTiming();
        auto record = descending(static_cast<std::uint32_t>(state.range(0)),
                                 static_cast<std::uint32_t>(state.range(1)));
        state.ResumeTiming();
        FileSegmentsTri(record.get());
        benchmark::DoNotOptimize(manager.ReduceFileSegment(record.get()));
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(sortAndReduce)
    ->Args({50000, 16})
    ->Args({200000, 16})
    ->Args({50000, 20})
    ->Args({200000, 20})
    ->Unit(benchmark::kMillisecond);

/// Two files whose segments interleave without touching, so that no early conflict ends the work.
void merge(benchmark::State &state)
{
    const auto count = static_cast<std::uint32_t>(state.range(0));
    const auto first = descending(count, kStep / 2);
    const auto second = descending(count, kStep / 2, kStep / 2);
    FileManager manager;
    for (auto _ : state) {
        FileData *merged = nullptr;
        if (!manager.MergeFiles({first.get(), second.get()}, &merged)) {
            state.SkipWithError("the files overlap");
        }
        files::releaseRecordHead(merged);
    }
    state.SetItemsProcessed(state.iterations() * state.range(0) * 2);
}
BENCHMARK(merge)->Arg(25000)->Arg(100000)->Unit(benchmark::kMillisecond);

/// As many areas as an image can hold, every pair ending together: the worst case of the checks.
void areaRules(benchmark::State &state)
{
    const auto count = static_cast<std::uint32_t>(state.range(0));
    std::vector<SegmentSFI> areas;
    for (std::uint32_t i = 0; i + 1 < count; ++i) {
        areas.push_back({i, count - i, nullptr, 'F'});
    }
    areas.push_back({0, 4, nullptr, 'C'});
    for (auto _ : state) {
        benchmark::DoNotOptimize(files::checkSfiAreas(areas));
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(areaRules)->Arg(16384)->Arg(65535)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
