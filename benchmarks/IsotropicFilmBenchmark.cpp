// Isotropic deposition and etching: the front that a dozen processes share. Measured as a user has
// it: a wafer, the lowest 3/8 of the volume filled, with a trench, and a film of 10 units. Two
// floors in the same run: a copy of both cell arrays, which is the memory that a run must touch,
// and an exact Euclidean distance transform of the same volume, which is what could be done
// instead.

#include "DistanceTransform.h"
#include "ProcessRuns.h"
#include "Wafer.h"

#include "Core/Operations/IsotropicFilmDeposition/IsotropicFilmDeposition.h"
#include "Core/Operations/IsotropicFilmEtching/IsotropicFilmEtching.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <vector>

namespace {

using Benchmarks::atAllSizes;
using Benchmarks::atAllSizesAndThreads;
using Benchmarks::countOf;
using Benchmarks::refill;
using Benchmarks::setCellRate;
using Benchmarks::Size;
using Benchmarks::sizeOf;
using Benchmarks::trenchedWafer;

constexpr float Thickness = 10.0f;
constexpr std::uint32_t Film = 9;

void BM_IsotropicDeposition(benchmark::State &state)
{
    const Size size = sizeOf(state.range(0));
    const Benchmarks::PoolThreads threads(static_cast<int>(state.range(1)));
    const std::vector<std::uint32_t> materials = Benchmarks::trenchMaterials(size);
    const auto volume = trenchedWafer(size);
    for (auto _ : state) {
        state.PauseTiming();
        refill(*volume, materials);
        state.ResumeTiming();
        Core::Operations::IsotropicFilmDeposition(volume.get(), Film, Thickness).runDeposition();
    }
    // The flat top alone gets ten layers.
    if (countOf(*volume, Film) < std::size_t{size.x} * size.y * 4 / 5 * 10)
        state.SkipWithError("the film is not there");
    setCellRate(state, size);
}
BENCHMARK(BM_IsotropicDeposition)->Apply(atAllSizesAndThreads);

void BM_IsotropicEtching(benchmark::State &state)
{
    const Size size = sizeOf(state.range(0));
    const Benchmarks::PoolThreads threads(static_cast<int>(state.range(1)));
    const std::vector<std::uint32_t> materials = Benchmarks::trenchMaterials(size);
    const auto volume = trenchedWafer(size);
    const std::size_t before = countOf(*volume, 1);
    for (auto _ : state) {
        state.PauseTiming();
        refill(*volume, materials);
        state.ResumeTiming();
        Core::Operations::IsotropicFilmEtching(volume.get(), 1, Thickness).runEtching();
    }
    if (countOf(*volume, 1) + std::size_t{size.x} * size.y * 4 / 5 * 10 > before)
        state.SkipWithError("too little was etched");
    setCellRate(state, size);
}
BENCHMARK(BM_IsotropicEtching)->Apply(atAllSizesAndThreads);

void BM_IsotropicFloorCopyBoth(benchmark::State &state)
{
    Benchmarks::copyBothArrays(state);
}
BENCHMARK(BM_IsotropicFloorCopyBoth)->Apply(atAllSizes);

void BM_IsotropicFloorDistanceTransform(benchmark::State &state)
{
    const Size size = sizeOf(state.range(0));
    const std::vector<std::uint32_t> materials = Benchmarks::trenchMaterials(size);
    std::vector<std::uint8_t> sources(materials.size());
    std::transform(materials.begin(), materials.end(), sources.begin(),
                   [](std::uint32_t material) { return material != 0 ? 1 : 0; });
    float overTheTop = 0.0f;
    for (auto _ : state) {
        const std::vector<float> squared =
            Benchmarks::squaredDistances(sources, size.x, size.y, size.z);
        overTheTop = squared[size.z * 3 / 8 + 9];
    }
    if (overTheTop != 100.0f)
        state.SkipWithError("the tenth layer is not at ten units");
    setCellRate(state, size);
}
BENCHMARK(BM_IsotropicFloorDistanceTransform)->Apply(atAllSizes);

} // namespace
