// Wafer bonding and film extraction, from the accepted dialog to the new volume: measures included,
// as a user waits for them too. Two wafers with a trench and two full volumes are bonded; the
// silicon of such a wafer is extracted, and a sponge, in which the body is met from all sides. The
// floor in the same run is a copy of both cell arrays of one source.

#include "ProcessRuns.h"
#include "Wafer.h"

#include "Core/Operations/ExtractFilm/FilmExtraction.h"
#include "Core/Operations/GlueSubstrate/GlueSubstrate.h"

#include <benchmark/benchmark.h>

#include <memory>
#include <vector>

namespace {

using Benchmarks::atAllSizes;
using Benchmarks::atAllSizesAndThreads;
using Benchmarks::countOf;
using Benchmarks::Size;
using Benchmarks::sizeOf;
using Core::Operations::FilmExtraction;
using Core::Operations::GlueSubstrate;
using Model::Automaton::TotalVolume;

constexpr std::uint32_t Silicon = 1;

std::unique_ptr<TotalVolume> volumeOf(const Size &size, const std::vector<std::uint32_t> &ids)
{
    return std::make_unique<TotalVolume>(size.x, size.y, size.z, 1.0f, 1.0f, 1.0f, Util::Vector3D(),
                                         ids);
}

/// Bonds two volumes of these materials, the top turned over.
void measureGlue(benchmark::State &state, const std::vector<std::uint32_t> &materials)
{
    const Size size = sizeOf(state.range(0));
    const Benchmarks::PoolThreads threads(static_cast<int>(state.range(1)));
    const auto base = volumeOf(size, materials);
    const auto top = volumeOf(size, materials);
    std::unique_ptr<TotalVolume> glued;
    for (auto _ : state) {
        // Freed before the next is made: memory for one is what the user waits for.
        state.PauseTiming();
        glued.reset();
        state.ResumeTiming();
        const auto measures = GlueSubstrate::measure(*base, *top);
        const Size final{measures.minimumX, measures.minimumY, measures.minimumZ + 1};
        glued = volumeOf(final, GlueSubstrate(base.get(), top.get(), measures,
                                              {final.x, final.y, final.z, 0, 0, true})
                                    .glue());
    }
    if (countOf(*glued, Silicon) != 2 * countOf(*base, Silicon))
        state.SkipWithError("the bodies are not whole");
    Benchmarks::setCellRate(state, size);
}

void BM_GlueWafers(benchmark::State &state)
{
    measureGlue(state, Benchmarks::trenchMaterials(sizeOf(state.range(0))));
}
BENCHMARK(BM_GlueWafers)->Apply(atAllSizesAndThreads);

void BM_GlueFullVolumes(benchmark::State &state)
{
    measureGlue(state, std::vector<std::uint32_t>(sizeOf(state.range(0)).cells(), Silicon));
}
BENCHMARK(BM_GlueFullVolumes)->Apply(atAllSizesAndThreads);

/// Extracts the silicon, all of which is connected.
void measureExtraction(benchmark::State &state, const std::vector<std::uint32_t> &materials)
{
    const Size size = sizeOf(state.range(0));
    const Benchmarks::PoolThreads threads(static_cast<int>(state.range(1)));
    const auto source = volumeOf(size, materials);
    std::unique_ptr<TotalVolume> extracted;
    for (auto _ : state) {
        state.PauseTiming();
        extracted.reset();
        state.ResumeTiming();
        extracted = volumeOf(size, FilmExtraction(source.get(), Silicon, true).extract());
    }
    if (countOf(*extracted, Silicon) != countOf(*source, Silicon))
        state.SkipWithError("the body is not whole");
    Benchmarks::setCellRate(state, size);
}

void BM_ExtractSilicon(benchmark::State &state)
{
    measureExtraction(state, Benchmarks::trenchMaterials(sizeOf(state.range(0))));
}
BENCHMARK(BM_ExtractSilicon)->Apply(atAllSizesAndThreads);

void BM_ExtractSponge(benchmark::State &state)
{
    const Size size = sizeOf(state.range(0));
    std::vector<std::uint32_t> materials(size.cells(), Silicon);
    // A hole in every cell that is odd on two axes or more: bars along all three are left.
    for (std::size_t i = 0; i < materials.size(); ++i)
        if (i % size.z % 2 + i / size.z % size.y % 2 + i / size.z / size.y % 2 > 1)
            materials[i] = 0;
    measureExtraction(state, materials);
}
BENCHMARK(BM_ExtractSponge)->Apply(atAllSizesAndThreads);

void BM_VolumeOperationFloorCopyBoth(benchmark::State &state)
{
    Benchmarks::copyBothArrays(state);
}
BENCHMARK(BM_VolumeOperationFloorCopyBoth)->Apply(atAllSizes);

} // namespace
