// Direct faces: the picture that every process waits for. Measured over a wafer, the lowest 3/8 of
// the volume filled, as most of a session has it: nearly all cells are deep inside or far outside,
// and a thin skin is seen. The floor, in the same run, is reading the cell array once (no picture
// can do with less); copying it is what a process pays at the least.

#include "Wafer.h"

#include "Model/Automaton/TotalVolume.h"

#include <benchmark/benchmark.h>

#include <cstring>
#include <memory>

namespace {

using Benchmarks::Size;
using Benchmarks::sizeOf;
using Model::Automaton::TotalVolume;
using Model::Automaton::Voxel;

std::unique_ptr<TotalVolume> wafer(const Size &size)
{
    return std::make_unique<TotalVolume>(size.x, size.y, size.z, 1.0f, 1.0f, 1.0f, Util::Vector3D(),
                                         Benchmarks::waferMaterials(size));
}

void setCellRate(benchmark::State &state, const Size &size)
{
    state.counters["cells"] = benchmark::Counter(static_cast<double>(size.cells()) *
                                                     static_cast<double>(state.iterations()),
                                                 benchmark::Counter::kIsRate);
}

void BM_DirectFaces(benchmark::State &state)
{
    const Size size = sizeOf(state.range(0));
    const Benchmarks::PoolThreads threads(static_cast<int>(state.range(1)));
    const auto volume = wafer(size);
    for (auto _ : state)
        volume->painter().rebuild();
    // The skin of the block: top and bottom, and four walls.
    const std::size_t filled = size.z * 3 / 8;
    const std::size_t expected =
        2 * std::size_t{size.x} * size.y + 2 * (std::size_t{size.x} + size.y) * filled;
    if (volume->painter().opaqueFaces().size() != expected)
        state.SkipWithError("the skin of the wafer has other faces");
    setCellRate(state, size);
}
BENCHMARK(BM_DirectFaces)
    ->ArgsProduct({{100, 200, 400}, {1, 2}})
    ->MeasureProcessCPUTime()
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);

void BM_DirectFacesFloorRead(benchmark::State &state)
{
    const Size size = sizeOf(state.range(0));
    const auto volume = wafer(size);
    const Voxel *cells = volume->voxels();
    std::size_t filled = 0;
    for (auto _ : state) {
        filled = 0;
        for (std::size_t i = 0; i < size.cells(); ++i)
            filled += cells[i].material() != 0 ? 1 : 0;
        benchmark::DoNotOptimize(filled);
    }
    volume->releaseVoxels();
    if (filled != std::size_t{size.x} * size.y * (size.z * 3 / 8))
        state.SkipWithError("the wafer has other cells");
    setCellRate(state, size);
}
BENCHMARK(BM_DirectFacesFloorRead)
    ->Arg(100)
    ->Arg(200)
    ->Arg(400)
    ->MeasureProcessCPUTime()
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);

void BM_DirectFacesFloorCopy(benchmark::State &state)
{
    const Size size = sizeOf(state.range(0));
    const auto volume = wafer(size);
    const Voxel *cells = volume->voxels();
    std::vector<Voxel> copy(size.cells());
    for (auto _ : state) {
        std::copy(cells, cells + size.cells(), copy.begin());
        benchmark::ClobberMemory();
    }
    volume->releaseVoxels();
    if (copy.front().material() != 1)
        state.SkipWithError("the copy has other cells");
    setCellRate(state, size);
}
BENCHMARK(BM_DirectFacesFloorCopy)
    ->Arg(100)
    ->Arg(200)
    ->Arg(400)
    ->MeasureProcessCPUTime()
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);

} // namespace
