// The processes that masks, dopants and oxide come from, ten units on a wafer with a trench, and
// the development of a resist film of 20 layers through a mask that lights every other column. Two
// floors in the same run: one pass over both cell arrays, and a copy of both.

#include "ProcessRuns.h"
#include "Wafer.h"

#include "Core/Operations/IonImplantation/IonImplantation.h"
#include "Core/Operations/Photolithography/Photolithography.h"
#include "Core/Operations/SiOxidation/SimpleSiOxidation.h"
#include "Core/Operations/SimpleDoping/SimpleDoping.h"

#include <benchmark/benchmark.h>

#include <vector>

namespace {

using Benchmarks::atAllSizes;
using Benchmarks::atAllSizesAndThreads;
using Benchmarks::countOf;
using Benchmarks::Size;
using Benchmarks::sizeOf;
using Model::Automaton::TotalVolume;

constexpr std::uint32_t Oxide = 3;
constexpr std::uint32_t Resist = 11;
constexpr std::uint32_t Doped = 14;
constexpr std::uint32_t Layers = 10;

/// Times run(volume) on cells of these materials, and looks whether `material` came to or left at
/// least so many cells.
template <typename Run>
void measure(benchmark::State &state, const std::vector<std::uint32_t> &materials,
             std::uint32_t material, std::size_t least, Run &&run)
{
    const Size size = sizeOf(state.range(0));
    const Benchmarks::PoolThreads threads(static_cast<int>(state.range(1)));
    const auto volume = Benchmarks::trenchedWafer(size);
    Benchmarks::refill(*volume, materials);
    const std::size_t before = countOf(*volume, material);
    for (auto _ : state) {
        state.PauseTiming();
        Benchmarks::refill(*volume, materials);
        state.ResumeTiming();
        run(*volume);
    }
    const std::size_t after = countOf(*volume, material);
    if ((after > before ? after - before : before - after) < least)
        state.SkipWithError("too few cells have changed");
    Benchmarks::setCellRate(state, size);
}

void BM_Photolithography(benchmark::State &state)
{
    const Size size = sizeOf(state.range(0));
    std::vector<std::uint32_t> materials = Benchmarks::waferMaterials(size);
    const std::uint32_t floor = size.z * 3 / 8;
    for (std::size_t i = 0; i < materials.size(); ++i)
        if (i % size.z >= floor && i % size.z < floor + 2 * Layers)
            materials[i] = Resist;
    std::vector<bool> mask(std::size_t{size.x} * size.y);
    for (std::size_t i = 0; i < mask.size(); i += 2)
        mask[i] = true;
    measure(state, materials, Resist, mask.size() / 2 * 2 * Layers, [&](TotalVolume &volume) {
        Core::Operations::Photolithography(&volume, Resist, {}, 0, 0, mask, size.x, size.y)
            .runDevelopment();
    });
}
BENCHMARK(BM_Photolithography)->Apply(atAllSizesAndThreads);

void BM_Doping(benchmark::State &state)
{
    const Size size = sizeOf(state.range(0));
    measure(
        state, Benchmarks::trenchMaterials(size), Doped,
        std::size_t{size.x} * size.y * 4 / 5 * Layers, [](TotalVolume &volume) {
            Core::Operations::SimpleDoping(&volume, Doped, static_cast<float>(Layers)).runDoping();
        });
}
BENCHMARK(BM_Doping)->Apply(atAllSizesAndThreads);

void BM_IonImplantation(benchmark::State &state)
{
    const Size size = sizeOf(state.range(0));
    measure(state, Benchmarks::trenchMaterials(size), Doped, std::size_t{size.x} * size.y * Layers,
            [](TotalVolume &volume) {
                Core::Operations::IonImplantation(&volume, Doped, 5.0f, static_cast<float>(Layers))
                    .runImplantation();
            });
}
BENCHMARK(BM_IonImplantation)->Apply(atAllSizesAndThreads);

void BM_Oxidation(benchmark::State &state)
{
    const Size size = sizeOf(state.range(0));
    // 0.56 of the thickness up and 0.3 of it down, in whole layers.
    measure(state, Benchmarks::trenchMaterials(size), Oxide, std::size_t{size.x} * size.y * (5 + 3),
            [](TotalVolume &volume) {
                Core::Operations::SimpleSiOxidation(&volume, 1.0).oxidateTo(Layers);
            });
}
BENCHMARK(BM_Oxidation)->Apply(atAllSizesAndThreads);

void BM_DopingFloorPass(benchmark::State &state)
{
    Benchmarks::passOverBothArrays(state);
}
BENCHMARK(BM_DopingFloorPass)->Apply(atAllSizes);

void BM_DopingFloorCopyBoth(benchmark::State &state)
{
    Benchmarks::copyBothArrays(state);
}
BENCHMARK(BM_DopingFloorCopyBoth)->Apply(atAllSizes);

} // namespace
