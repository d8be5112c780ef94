// Model extraction: what the first two clicks of its dialog take. Measured over a checkerboard of
// blocks, so that a volume has as many boxes as blocks; a real device has tens of them, some 2000
// (size 13) are more than anyone draws. The floor, in the same run, is reading the cell array once:
// no decomposition can do with less.

#include "Model/Automaton/TotalVolume.h"
#include "Model/ModelExtraction/CantileverModelRule.h"
#include "Model/ModelExtraction/CuboidDecomposer.h"
#include "Model/ModelExtraction/ExtractedModel.h"
#include "Model/ModelExtraction/IStructure.h"

#include <benchmark/benchmark.h>

#include <cstdint>
#include <memory>
#include <vector>

namespace {

using Model::Automaton::TotalVolume;
using Model::Automaton::Voxel;
using Model::ModelExtraction::CantileverModelRule;
using Model::ModelExtraction::CuboidDecomposer;
using Model::ModelExtraction::ExtractedModel;

/// Cells of a block along each side.
constexpr std::uint32_t Block = 12;

/// Aluminium and copper in turn, so many blocks along each axis.
std::unique_ptr<TotalVolume> checkerboard(std::uint32_t blocks)
{
    const std::uint32_t side = blocks * Block;
    std::vector<std::uint32_t> materials;
    materials.reserve(std::size_t{side} * side * side);
    for (std::uint32_t x = 0; x < side; ++x)
        for (std::uint32_t y = 0; y < side; ++y)
            for (std::uint32_t z = 0; z < side; ++z)
                materials.push_back(2 + (x / Block + y / Block + z / Block) % 2);
    return std::make_unique<TotalVolume>(side, side, side, 1.0f, 1.0f, 1.0f, Util::Vector3D(),
                                         materials);
}

std::size_t cellsOf(const TotalVolume &volume)
{
    return std::size_t{volume.sizeX()} * volume.sizeY() * volume.sizeZ();
}

std::uint32_t blocksOf(const benchmark::State &state)
{
    return static_cast<std::uint32_t>(state.range(0));
}

void setRates(benchmark::State &state, const TotalVolume &volume, std::size_t boxes)
{
    state.counters["boxes"] = benchmark::Counter(static_cast<double>(boxes));
    state.counters["cells"] = benchmark::Counter(static_cast<double>(cellsOf(volume)) *
                                                     static_cast<double>(state.iterations()),
                                                 benchmark::Counter::kIsRate);
}

void BM_CuboidDecomposition(benchmark::State &state)
{
    const auto volume = checkerboard(blocksOf(state));
    const std::size_t expected = std::size_t{blocksOf(state)} * blocksOf(state) * blocksOf(state);
    CuboidDecomposer decomposer(volume.get());
    for (auto _ : state)
        decomposer.run();
    std::size_t neighbours = 0;
    for (const auto &box : decomposer.envelopes())
        neighbours += box->neighbourCount();
    const std::size_t inner = 6 * expected * (blocksOf(state) - 1) / blocksOf(state);
    if (decomposer.envelopes().size() != expected || neighbours != inner)
        state.SkipWithError("the checkerboard has other boxes");
    setRates(state, *volume, expected);
}
BENCHMARK(BM_CuboidDecomposition)
    ->Arg(5)
    ->Arg(13)
    ->Arg(25)
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);

void BM_CuboidDecompositionFloorRead(benchmark::State &state)
{
    const auto volume = checkerboard(blocksOf(state));
    const Voxel *cells = volume->voxels();
    std::size_t copper = 0;
    for (auto _ : state) {
        copper = 0;
        for (std::size_t i = 0; i < cellsOf(*volume); ++i)
            copper += cells[i].material() == 3 ? 1 : 0;
        benchmark::DoNotOptimize(copper);
    }
    volume->releaseVoxels();
    if (copper < cellsOf(*volume) / 3)
        state.SkipWithError("the checkerboard has other cells");
    setRates(state, *volume, 0);
}
BENCHMARK(BM_CuboidDecompositionFloorRead)
    ->Arg(5)
    ->Arg(13)
    ->Arg(25)
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);

void BM_CantileverDetection(benchmark::State &state)
{
    const auto volume = checkerboard(blocksOf(state));
    CuboidDecomposer decomposer(volume.get());
    decomposer.run();
    const ExtractedModel model(decomposer.envelopes());
    CantileverModelRule rule;
    bool found = true;
    for (auto _ : state)
        found = rule.extract(model) != nullptr;
    // Even a corner of the board has three neighbours.
    if (found)
        state.SkipWithError("the checkerboard has no beam");
    setRates(state, *volume, decomposer.envelopes().size());
}
BENCHMARK(BM_CantileverDetection)->Arg(13)->Arg(25)->UseRealTime()->Unit(benchmark::kMillisecond);

} // namespace
