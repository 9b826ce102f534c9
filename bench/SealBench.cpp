#include "preparation/ImageOpener.h"
#include "preparation/SfiRequestBuilder.h"

#include <benchmark/benchmark.h>

namespace
{

/// 64 MiB of firmware: plan, nonce, seal, open again, compare.
void sealFirmware(benchmark::State &state)
{
    constexpr std::size_t kBytes = std::size_t{64} << 20;
    SfiRequestBuilder request;
    request.hash = state.range(0) == 2;
    request.ramSize = state.range(1) != 0 ? 0x1E000 : 0;
    request.firmware(0x08000000, ramp(1, 7, kBytes));
    for ([[maybe_unused]] const auto round : state) {
        if (request.build().isEmpty()) {
            state.SkipWithError("no image");
        }
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(kBytes));
}
BENCHMARK(sealFirmware)
    ->ArgNames({"version", "cut"})
    ->Args({1, 0})
    ->Args({2, 0})
    ->Args({2, 1})
    ->Unit(benchmark::kMillisecond);

/// As many one-byte segments as an image can count, given from the top down.
void planSegments(benchmark::State &state)
{
    SfiRequestBuilder request;
    for (auto i = static_cast<std::uint32_t>(state.range(0)); i > 0; --i) {
        request.firmware(i * 32, {1});
    }
    for ([[maybe_unused]] const auto round : state) {
        if (request.build().isEmpty()) {
            state.SkipWithError("no image");
        }
    }
}
BENCHMARK(planSegments)->Arg(16384)->Arg(32768)->Arg(65534)->Unit(benchmark::kMillisecond);

void openImage(benchmark::State &state)
{
    SfiRequestBuilder request;
    request.hash = true;
    request.profile = static_cast<unsigned int>(state.range(0));
    request.firmware(0x08000000, ramp(1, 7, std::size_t{64} << 20));
    const Bytes image = bytesOf(request.build());
    const Bytes key = bytesOf(request.key);
    for ([[maybe_unused]] const auto round : state) {
        if (!preparation::openImage(image, preparation::ByteView(key))->authentic) {
            state.SkipWithError("not authentic");
        }
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(image.size()));
}
BENCHMARK(openImage)->ArgName("profile")->Arg(0xFF)->Arg(0x484)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
