// The smooth surface and the merged blocks: what a user waits for after every process while one of
// them is chosen. Measured over a wafer with a trench: nearly all cells are deep inside or far
// outside, and what is built is a thin skin. The floor, in the same run, is copying both cell
// arrays, which is what every process pays before any picture.

#include "ProcessRuns.h"

#include "Model/Automaton/MarchingCubeSurface.h"
#include "Model/Automaton/OctreeSurface.h"

#include <benchmark/benchmark.h>

namespace {

using Benchmarks::atAllSizes;
using Benchmarks::atAllSizesAndThreads;
using Benchmarks::setCellRate;
using Benchmarks::Size;
using Benchmarks::sizeOf;
using Benchmarks::trenchedWafer;
using Benchmarks::trenchMaterials;
using Model::Automaton::MarchingCubeSurface;
using Model::Automaton::OctreeNode;
using Model::Automaton::OctreeSurface;
using Model::Automaton::TotalVolume;

/// The trench runs along y, so the cubes between the two ends are all alike: two triangles for
/// each that the outline of the cross-section passes. At an end, a cube has two triangles inside
/// the outline or at a straight side, one at a convex corner and three at a concave one.
std::size_t trianglesOfTrench(const Size &size)
{
    const std::vector<std::uint32_t> ids = trenchMaterials(size);
    const auto isFilled = [&](std::uint32_t x, std::uint32_t z) {
        return x > 0 && x < size.x && z > 0 && z < size.z &&
               ids[std::size_t{x} * size.y * size.z + z] != 0;
    };
    std::size_t between = 0;
    std::size_t atEnd = 0;
    for (std::uint32_t x = 0; x < size.x; ++x) {
        for (std::uint32_t z = 0; z < size.z; ++z) {
            constexpr std::size_t Between[5] = {0, 2, 2, 2, 0};
            constexpr std::size_t AtEnd[5] = {0, 1, 2, 3, 2};
            const int filled = int{isFilled(x, z)} + int{isFilled(x + 1, z)} +
                               int{isFilled(x, z + 1)} + int{isFilled(x + 1, z + 1)};
            between += Between[filled];
            atEnd += AtEnd[filled];
        }
    }
    return between * (size.y - 2) + 2 * atEnd;
}

void BM_MarchingCubes(benchmark::State &state)
{
    const Size size = sizeOf(state.range(0));
    const Benchmarks::PoolThreads threads(static_cast<int>(state.range(1)));
    const auto volume = trenchedWafer(size);
    MarchingCubeSurface surface(volume.get());
    for (auto _ : state)
        surface.rebuild({0, 0, 0}, {size.x, size.y, size.z});
    if (surface.triangles().size() != trianglesOfTrench(size))
        state.SkipWithError("the surface has other triangles");
    state.counters["triangles"] = static_cast<double>(surface.triangles().size());
    setCellRate(state, size);
}
BENCHMARK(BM_MarchingCubes)->Apply(atAllSizesAndThreads);

std::size_t filledCells(const OctreeNode &node)
{
    if (node.leaf)
        return node.material == 0 ? 0 : std::size_t{node.size} * node.size * node.size;
    std::size_t cells = 0;
    for (unsigned number = 0; number < 8; ++number)
        cells += filledCells(*node.child(number));
    return cells;
}

void BM_Octree(benchmark::State &state)
{
    const Size size = sizeOf(state.range(0));
    const auto volume = trenchedWafer(size);
    OctreeSurface surface(volume.get());
    for (auto _ : state)
        surface.rebuild({0, 0, 0}, {size.x, size.y, size.z});
    if (filledCells(surface.root()) != Benchmarks::countOf(*volume, 1))
        state.SkipWithError("the tree has other cells");
    state.counters["faces"] = static_cast<double>(surface.opaqueFaces().size());
    setCellRate(state, size);
}
BENCHMARK(BM_Octree)->Apply(atAllSizes);

void BM_SurfaceFloorCopyBoth(benchmark::State &state)
{
    Benchmarks::copyBothArrays(state);
}
BENCHMARK(BM_SurfaceFloorCopyBoth)->Apply(atAllSizes);

} // namespace
