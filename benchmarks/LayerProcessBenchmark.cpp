// The processes of surface micromachining beside isotropic films: poured and levelled in one pass,
// and fronts that move by layers or by a metric of their own, ten units or layers on a wafer with a
// trench. Two floors in the same run: one pass over both cell arrays, and a copy of both.

#include "ProcessRuns.h"
#include "Wafer.h"

#include "Core/Operations/AnisotropicFilmDeposition/AnisotropicFilmDeposition.h"
#include "Core/Operations/Electrodeposition/Electrodeposition.h"
#include "Core/Operations/MooreNeighborhood/MooreNeighborhoodDeposition.h"
#include "Core/Operations/MooreNeighborhood/MooreNeighborhoodEtching.h"
#include "Core/Operations/Planarization/Planarization.h"
#include "Core/Operations/ReactiveIonEtching/SimpleReactiveIonEtching.h"
#include "Core/Operations/SpinCoating/SpinCoating.h"

#include <QString>
#include <QtGlobal>

#include <benchmark/benchmark.h>

#include <vector>

namespace {

using Benchmarks::atAllSizes;
using Benchmarks::atAllSizesAndThreads;
using Benchmarks::countOf;
using Benchmarks::Size;
using Benchmarks::sizeOf;
using Model::Automaton::TotalVolume;

constexpr std::uint32_t Silicon = 1;
constexpr std::uint32_t Film = 9;
constexpr std::uint32_t Layers = 10;

/// Times run(volume) on the trenched wafer, and looks whether it changed as many cells of the
/// material as it must have: those over the flat top, four fifths of the plane, at least.
template <typename Run>
void measure(benchmark::State &state, std::uint32_t material, Run &&run)
{
    const Size size = sizeOf(state.range(0));
    const Benchmarks::PoolThreads threads(static_cast<int>(state.range(1)));
    // Where the log goes to is not what is measured.
    const QtMessageHandler handler =
        qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
    const std::vector<std::uint32_t> materials = Benchmarks::trenchMaterials(size);
    const auto volume = Benchmarks::trenchedWafer(size);
    const std::size_t before = countOf(*volume, material);
    for (auto _ : state) {
        state.PauseTiming();
        Benchmarks::refill(*volume, materials);
        state.ResumeTiming();
        run(*volume);
    }
    qInstallMessageHandler(handler);
    const std::size_t after = countOf(*volume, material);
    const std::size_t changed = after > before ? after - before : before - after;
    if (changed < std::size_t{size.x} * size.y * 4 / 5 * Layers)
        state.SkipWithError("too few cells have changed");
    Benchmarks::setCellRate(state, size);
}

void BM_SpinCoating(benchmark::State &state)
{
    measure(state, Film, [](TotalVolume &volume) {
        Core::Operations::SpinCoating(&volume, Film, volume.sizeZ() * 3 / 4).runDeposition();
    });
}
BENCHMARK(BM_SpinCoating)->Apply(atAllSizesAndThreads);

void BM_Planarization(benchmark::State &state)
{
    measure(state, Silicon, [](TotalVolume &volume) {
        Core::Operations::Planarization(&volume, volume.sizeZ() / 4, 1).runPlanarization();
    });
}
BENCHMARK(BM_Planarization)->Apply(atAllSizesAndThreads);

void BM_MooreDeposition(benchmark::State &state)
{
    measure(state, Film, [](TotalVolume &volume) {
        Core::Operations::MooreNeighborhoodDeposition(&volume, Film, Layers).runDeposition();
    });
}
BENCHMARK(BM_MooreDeposition)->Apply(atAllSizesAndThreads);

void BM_MooreEtching(benchmark::State &state)
{
    measure(state, Silicon, [](TotalVolume &volume) {
        Core::Operations::MooreNeighborhoodEtching(&volume, Silicon, Layers).runEtching();
    });
}
BENCHMARK(BM_MooreEtching)->Apply(atAllSizesAndThreads);

void BM_ReactiveIonEtching(benchmark::State &state)
{
    using Core::Operations::SimpleReactiveIonEtching;
    measure(state, Silicon, [](TotalVolume &volume) {
        SimpleReactiveIonEtching(&volume, Silicon, Layers, SimpleReactiveIonEtching::FromTop)
            .runEtching();
    });
}
BENCHMARK(BM_ReactiveIonEtching)->Apply(atAllSizesAndThreads);

void BM_Electrodeposition(benchmark::State &state)
{
    measure(state, Film, [](TotalVolume &volume) {
        Core::Operations::Electrodeposition(&volume, Film, Silicon, static_cast<float>(Layers))
            .runDeposition();
    });
}
BENCHMARK(BM_Electrodeposition)->Apply(atAllSizesAndThreads);

void BM_AnisotropicDeposition(benchmark::State &state)
{
    using Core::Operations::AnisotropicFilmDeposition;
    measure(state, Film, [](TotalVolume &volume) {
        AnisotropicFilmDeposition(&volume, Film, static_cast<float>(Layers), 0.5f,
                                  AnisotropicFilmDeposition::OnTop)
            .runDeposition();
    });
}
BENCHMARK(BM_AnisotropicDeposition)->Apply(atAllSizesAndThreads);

void BM_LayerFloorPass(benchmark::State &state)
{
    Benchmarks::passOverBothArrays(state);
}
BENCHMARK(BM_LayerFloorPass)->Apply(atAllSizes);

void BM_LayerFloorCopyBoth(benchmark::State &state)
{
    Benchmarks::copyBothArrays(state);
}
BENCHMARK(BM_LayerFloorCopyBoth)->Apply(atAllSizes);

} // namespace
