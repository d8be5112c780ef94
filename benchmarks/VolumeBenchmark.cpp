// Substrate fill, volume construction and clone: what a user waits for between a dialog and the
// first picture. The floor, in the same run, is writing two fresh arrays of cells, which is the
// least that a new volume costs.

#include "Wafer.h"

#include "Core/Operations/SubstrateBuilder.h"
#include "Model/Automaton/TotalVolume.h"

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <cstring>
#include <memory>

namespace {

using Benchmarks::Size;
using Benchmarks::sizeOf;
using Core::Operations::SubstrateBuilder;
using Model::Automaton::TotalVolume;
using Model::Automaton::Voxel;

void setCellRate(benchmark::State &state, const Size &size)
{
    state.counters["cells"] = benchmark::Counter(static_cast<double>(size.cells()) *
                                                     static_cast<double>(state.iterations()),
                                                 benchmark::Counter::kIsRate);
}

void BM_SubstrateBox(benchmark::State &state)
{
    const Size size = sizeOf(state.range(0));
    std::uint32_t floorMaterial = 0;
    for (auto _ : state) {
        const auto volume = SubstrateBuilder(1, size.x, size.y, size.z, Util::Vector3D(), 0, 0, 0,
                                             size.x, size.y, size.z * 3 / 8)
                                .build();
        floorMaterial = volume->voxels()[0].material();
        volume->releaseVoxels();
    }
    if (floorMaterial != 1)
        state.SkipWithError("the substrate is not there");
    setCellRate(state, size);
}

void BM_SubstrateSphere(benchmark::State &state)
{
    const Size size = sizeOf(state.range(0));
    const std::size_t center =
        (std::size_t{size.x / 2} * size.y + size.y / 2) * size.z + size.z / 2;
    std::uint32_t centerMaterial = 0;
    for (auto _ : state) {
        const auto volume = SubstrateBuilder(1, size.x, size.y, size.z, Util::Vector3D(),
                                             size.x / 2, size.y / 2, size.z / 2, size.z / 2)
                                .build();
        centerMaterial = volume->voxels()[center].material();
        volume->releaseVoxels();
    }
    if (centerMaterial != 1)
        state.SkipWithError("the sphere is not there");
    setCellRate(state, size);
}

void BM_VolumeConstruction(benchmark::State &state)
{
    const Size size = sizeOf(state.range(0));
    const std::vector<std::uint32_t> ids = Benchmarks::waferMaterials(size);
    std::uint32_t floorMaterial = 0;
    for (auto _ : state) {
        TotalVolume volume(size.x, size.y, size.z, 1.0f, 1.0f, 1.0f, Util::Vector3D(), ids);
        floorMaterial = volume.voxels()[0].material();
        volume.releaseVoxels();
    }
    if (floorMaterial != 1)
        state.SkipWithError("the cells are not there");
    setCellRate(state, size);
}

void BM_VolumeClone(benchmark::State &state)
{
    const Size size = sizeOf(state.range(0));
    TotalVolume volume(size.x, size.y, size.z, 1.0f, 1.0f, 1.0f, Util::Vector3D(),
                       Benchmarks::waferMaterials(size));
    std::uint32_t floorMaterial = 0;
    for (auto _ : state) {
        const std::unique_ptr<TotalVolume> copy(volume.clone());
        floorMaterial = copy->voxels()[0].material();
        copy->releaseVoxels();
    }
    if (floorMaterial != 1)
        state.SkipWithError("the cells are not there");
    setCellRate(state, size);
}

void BM_VolumeFloorCopy(benchmark::State &state)
{
    const Size size = sizeOf(state.range(0));
    const std::size_t bytes = size.cells() * sizeof(Voxel);
    const std::vector<Voxel> cells(size.cells(), Voxel(1));
    std::uint32_t floorMaterial = 0;
    for (auto _ : state) {
        for (int array = 0; array < 2; ++array) {
            void *copy = std::malloc(bytes);
            std::memcpy(copy, cells.data(), bytes);
            benchmark::DoNotOptimize(copy);
            floorMaterial = static_cast<const Voxel *>(copy)->material();
            std::free(copy);
        }
    }
    if (floorMaterial != 1)
        state.SkipWithError("the copy has other cells");
    setCellRate(state, size);
}

void atAllSizes(benchmark::internal::Benchmark *subject)
{
    subject->Arg(100)->Arg(200)->Arg(400)->UseRealTime()->Unit(benchmark::kMillisecond);
}
BENCHMARK(BM_SubstrateBox)->Apply(atAllSizes);
BENCHMARK(BM_SubstrateSphere)->Apply(atAllSizes);
BENCHMARK(BM_VolumeConstruction)->Apply(atAllSizes);
BENCHMARK(BM_VolumeClone)->Apply(atAllSizes);
BENCHMARK(BM_VolumeFloorCopy)->Apply(atAllSizes);

} // namespace
