#include "workbench/widgets/MemoryMap.h"

#include <QApplication>
#include <QPixmap>

#include <benchmark/benchmark.h>

namespace
{

/// The largest image: all the areas that its head can count.
/// @param step  bytes from one area of 512 bytes to the next
workbench::MapContents largestImage(std::uint32_t step)
{
    workbench::MapContents contents;
    contents.groups = {{"Firmware", {}}, {"External", {}}, {"Pause", {}}};
    contents.blockWord = "area";
    for (int at = 0; at < 65535; ++at) {
        contents.blocks.push_back(
            {0x8000000 + static_cast<std::uint32_t>(at) * step, 512, at / 5 % 3, at + 1, at});
    }
    return contents;
}

/// A new width each time, so that the blocks are laid out anew before they are painted.
void layOutAndPaint(benchmark::State &state)
{
    workbench::MemoryMap map("map", "Image", nullptr);
    map.setContents(largestImage(static_cast<std::uint32_t>(state.range(0))));
    int width = 600;
    for (auto _ : state) {
        width = width == 600 ? 601 : 600;
        map.resize(width, 220);
        benchmark::DoNotOptimize(map.grab());
    }
}
BENCHMARK(layOutAndPaint)->Arg(512)->Arg(1024)->Unit(benchmark::kMillisecond);

void paint(benchmark::State &state)
{
    workbench::MemoryMap map("map", "Image", nullptr);
    map.setContents(largestImage(static_cast<std::uint32_t>(state.range(0))));
    map.resize(600, 220);
    for (auto _ : state) {
        benchmark::DoNotOptimize(map.grab());
    }
}
BENCHMARK(paint)->Arg(512)->Arg(1024)->Unit(benchmark::kMillisecond);

}  // namespace

// QT_SCALE_FACTOR=2 in the environment measures a screen of double density.
int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
