#include "ProcessRuns.h"

#include <algorithm>

namespace Benchmarks {

using Model::Automaton::TotalVolume;
using Model::Automaton::Voxel;

std::unique_ptr<TotalVolume> trenchedWafer(const Size &size)
{
    return std::make_unique<TotalVolume>(size.x, size.y, size.z, 1.0f, 1.0f, 1.0f, Util::Vector3D(),
                                         trenchMaterials(size));
}

void refill(TotalVolume &volume, const std::vector<std::uint32_t> &materials)
{
    Voxel *voxels = volume.voxels();
    Voxel *next = volume.nextVoxels();
    for (std::size_t i = 0; i < materials.size(); ++i) {
        voxels[i].setMaterial(materials[i]);
        next[i].setMaterial(materials[i]);
    }
    volume.releaseVoxels();
    volume.releaseNextVoxels();
}

std::size_t countOf(TotalVolume &volume, std::uint32_t material)
{
    const std::size_t cells = std::size_t{volume.sizeX()} * volume.sizeY() * volume.sizeZ();
    const Voxel *voxels = volume.voxels();
    const auto count = std::count_if(voxels, voxels + cells, [material](const Voxel &cell) {
        return cell.material() == material;
    });
    volume.releaseVoxels();
    return static_cast<std::size_t>(count);
}

void setCellRate(benchmark::State &state, const Size &size)
{
    state.counters["cells"] = benchmark::Counter(static_cast<double>(size.cells()) *
                                                     static_cast<double>(state.iterations()),
                                                 benchmark::Counter::kIsRate);
}

void atAllSizesAndThreads(benchmark::internal::Benchmark *subject)
{
    subject->ArgsProduct({{100, 200, 400}, {1, 2}})->UseRealTime()->Unit(benchmark::kMillisecond);
}

void atAllSizes(benchmark::internal::Benchmark *subject)
{
    subject->Arg(100)->Arg(200)->Arg(400)->UseRealTime()->Unit(benchmark::kMillisecond);
}

void copyBothArrays(benchmark::State &state)
{
    const Size size = sizeOf(state.range(0));
    const auto volume = trenchedWafer(size);
    const auto copies = trenchedWafer(size);
    refill(*copies, std::vector<std::uint32_t>(size.cells(), 0));
    const Voxel *from[2] = {volume->voxels(), volume->nextVoxels()};
    Voxel *to[2] = {copies->voxels(), copies->nextVoxels()};
    for (auto _ : state) {
        for (int array = 0; array < 2; ++array)
            std::copy(from[array], from[array] + size.cells(), to[array]);
        benchmark::ClobberMemory();
    }
    copies->releaseVoxels();
    copies->releaseNextVoxels();
    if (countOf(*copies, 1) != countOf(*trenchedWafer(size), 1))
        state.SkipWithError("the copy has other cells");
    setCellRate(state, size);
}

void passOverBothArrays(benchmark::State &state)
{
    const Size size = sizeOf(state.range(0));
    const std::vector<std::uint32_t> materials = trenchMaterials(size);
    const auto volume = trenchedWafer(size);
    for (auto _ : state) {
        // Leaves the caches as they are for a process.
        state.PauseTiming();
        refill(*volume, materials);
        state.ResumeTiming();
        Voxel *voxels = volume->voxels();
        Voxel *next = volume->nextVoxels();
        for (std::size_t i = 0; i < size.cells(); ++i) {
            voxels[i].setMaterial(voxels[i].material() + 1);
            next[i].setMaterial(voxels[i].material());
        }
        benchmark::ClobberMemory();
        volume->releaseVoxels();
        volume->releaseNextVoxels();
    }
    if (countOf(*volume, 2) + countOf(*volume, 1) != size.cells())
        state.SkipWithError("the pass missed a cell");
    setCellRate(state, size);
}

} // namespace Benchmarks
