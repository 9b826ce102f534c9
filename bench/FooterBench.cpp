// How fast an image's footer is looked for in 64 MiB that hold none.
#include "workbench/tabs/sign/SignFooter.h"

#include <benchmark/benchmark.h>

#include <array>
#include <random>
#include <vector>

namespace
{

constexpr std::size_t kBytes = std::size_t{64} * 1024 * 1024;

void look(benchmark::State &state, const std::vector<std::uint8_t> &image)
{
    for (auto _ : state) {
        benchmark::DoNotOptimize(workbench::findFooter(image));
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(image.size()));
}

void BM_Random(benchmark::State &state)
{
    std::mt19937 random(1);
    std::vector<std::uint8_t> image(kBytes);
    for (std::uint8_t &byte : image) {
        byte = static_cast<std::uint8_t>(random());
    }
    look(state, image);
}
BENCHMARK(BM_Random)->Unit(benchmark::kMillisecond);

/// Every block passes the first look.
void BM_NearMisses(benchmark::State &state)
{
    constexpr std::array<std::uint8_t, 4> kNear = {0x00, 0x29, 0x37, 0x23};
    std::vector<std::uint8_t> image(kBytes);
    for (std::size_t i = 0; i < image.size(); ++i) {
        image[i] = kNear[i % kNear.size()];
    }
    look(state, image);
}
BENCHMARK(BM_NearMisses)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
