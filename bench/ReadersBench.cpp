#include "FirmwareTexts.h"

#include "files/firmware/HexText.h"

#include <benchmark/benchmark.h>

#include <algorithm>

namespace
{

constexpr std::size_t kPayload = 64 * 1024 * 1024;
constexpr std::size_t kPiece = 256 * 1024;

void parseText(benchmark::State &state, const std::string &text)
{
    const auto bytes = std::as_bytes(std::span(text));
    const std::span<const std::uint8_t> all(reinterpret_cast<const std::uint8_t *>(bytes.data()),
                                            bytes.size());
    for (auto _ : state) {
        files::HexText parser;
        for (std::size_t at = 0; at < all.size();) {
            const std::size_t size = std::min(kPiece, all.size() - at);
            at += *parser.consume(all.subspan(at, size), at + size == all.size());
        }
        benchmark::DoNotOptimize(parser.finish());
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * text.size()));
}

void intelText(benchmark::State &state)
{
    parseText(state, denseIntelText(kPayload, static_cast<std::size_t>(state.range(0))));
}
BENCHMARK(intelText)->Arg(16)->Arg(32)->Unit(benchmark::kMillisecond);

void srecordText(benchmark::State &state)
{
    parseText(state, denseSRecordText(kPayload));
}
BENCHMARK(srecordText)->Unit(benchmark::kMillisecond);

void descendingSegments(benchmark::State &state)
{
    parseText(state, descendingText(static_cast<std::size_t>(state.range(0)), 64));
}
BENCHMARK(descendingSegments)->Arg(200'000)->Arg(400'000)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
