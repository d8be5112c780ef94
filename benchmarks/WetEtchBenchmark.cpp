// The silicon crystal over a wafer, and ten units of its wet etching: the whole top of a bare
// wafer, and a pit below a resist mask whose opening is half as wide as the wafer. Two floors: for
// the crystal the filling of as many fresh bytes as its atoms take, for etching one look at every
// atom.

#include "ProcessRuns.h"
#include "Wafer.h"

#include "Core/Operations/SiEtching/AtomicStructureSimpleSiWetEtch.h"
#include "Core/Operations/SiEtching/ContinuosWetEtching.h"
#include "Model/Automaton/SiLattice.h"
#include "Model/Automaton/TotalVolume.h"

#include <benchmark/benchmark.h>

#include <QtGlobal>

#include <cstring>
#include <memory>
#include <vector>

namespace {

using Benchmarks::Size;
using Benchmarks::sizeOf;
using Model::Automaton::SiAtom;
using Model::Automaton::SiCell;
using Model::Automaton::SiLattice;
using Model::Automaton::TotalVolume;

constexpr double Depth = 10.0;
constexpr std::uint32_t Resist = 11;

/// The runs log a line a step.
class Silence final
{
public:
    Silence()
        : m_before(
              qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {}))
    {}
    ~Silence() { qInstallMessageHandler(m_before); }
    Silence(const Silence &) = delete;
    Silence &operator=(const Silence &) = delete;

private:
    QtMessageHandler m_before;
};

std::vector<std::uint32_t> maskedMaterials(const Size &size)
{
    std::vector<std::uint32_t> ids = Benchmarks::waferMaterials(size);
    const std::uint32_t top = size.z * 3 / 8;
    for (std::uint32_t x = 0; x < size.x; ++x)
        for (std::uint32_t y = 0; y < size.y; ++y) {
            const bool isOpen =
                x >= size.x / 4 && x < size.x * 3 / 4 && y >= size.y / 4 && y < size.y * 3 / 4;
            if (!isOpen)
                ids[(std::size_t{x} * size.y + y) * size.z + top] = Resist;
        }
    return ids;
}

std::unique_ptr<TotalVolume> volumeOf(const Size &size, const std::vector<std::uint32_t> &ids)
{
    return std::make_unique<TotalVolume>(size.x, size.y, size.z, 1.0f, 1.0f, 1.0f, Util::Vector3D(),
                                         ids);
}

std::size_t activeAtoms(const SiLattice &lattice)
{
    std::size_t count = 0;
    for (const SiLattice::Entry &entry : lattice.cells())
        for (unsigned rank = 0; rank < SiCell::Atoms; ++rank)
            count += entry.second->atom(rank).state() == SiAtom::Active ? 1 : 0;
    return count;
}

void setAtomRate(benchmark::State &state, std::size_t atoms)
{
    state.counters["atoms"] =
        benchmark::Counter(static_cast<double>(atoms) * static_cast<double>(state.iterations()),
                           benchmark::Counter::kIsRate);
}

void BM_SiliconLattice(benchmark::State &state)
{
    const Size size = sizeOf(state.range(0));
    const auto volume = volumeOf(size, Benchmarks::waferMaterials(size));
    for (auto _ : state)
        volume->rebuildSiLattice();
    setAtomRate(state, volume->siLattice()->cells().size() * SiCell::Atoms);
}

void BM_SiliconLatticeFloor(benchmark::State &state)
{
    const Size size = sizeOf(state.range(0));
    const auto volume = volumeOf(size, Benchmarks::waferMaterials(size));
    volume->rebuildSiLattice();
    const std::size_t bytes = volume->siLattice()->cells().size() * sizeof(SiCell);
    for (auto _ : state) {
        const std::unique_ptr<char[]> fresh(new char[bytes]);
        std::memset(fresh.get(), 1, bytes);
        benchmark::DoNotOptimize(fresh[bytes / 2]);
    }
}

void BM_LookAtEveryAtom(benchmark::State &state)
{
    const Size size = sizeOf(state.range(0));
    const auto volume = volumeOf(size, Benchmarks::waferMaterials(size));
    volume->rebuildSiLattice();
    for (auto _ : state)
        benchmark::DoNotOptimize(activeAtoms(*volume->siLattice()));
}

/// Argument 0 is the size, argument 1 the number of threads.
template <typename Etching>
void etch(benchmark::State &state, bool isMasked)
{
    const Size size = sizeOf(state.range(0));
    const Benchmarks::PoolThreads threads(static_cast<int>(state.range(1)));
    const Silence silence;
    const std::vector<std::uint32_t> materials =
        isMasked ? maskedMaterials(size) : Benchmarks::waferMaterials(size);
    std::size_t gone = 0;
    for (auto _ : state) {
        state.PauseTiming();
        {
            const auto volume = volumeOf(size, materials);
            volume->rebuildSiLattice();
            const std::size_t before = activeAtoms(*volume->siLattice());
            state.ResumeTiming();
            Etching(volume.get(), Depth).runEtching();
            state.PauseTiming();
            gone = before - activeAtoms(*volume->siLattice());
        }
        state.ResumeTiming();
    }
    state.counters["gone"] = static_cast<double>(gone);
}

void BM_WetEtchBare(benchmark::State &state)
{
    etch<Core::Operations::AtomicStructureSimpleSiWetEtch>(state, false);
    if (state.counters["gone"] < 8.0 * Depth * 0.8 * static_cast<double>(state.range(0)) *
                                     static_cast<double>(state.range(0)))
        state.SkipWithError("too few atoms are gone");
}

void BM_WetEtchPit(benchmark::State &state)
{
    etch<Core::Operations::AtomicStructureSimpleSiWetEtch>(state, true);
    if (!(state.counters["gone"] > 0.0))
        state.SkipWithError("no atom is gone");
}

/// A flat (100) surface has no rate: this is the cost of looking at it, and of its log lines.
void BM_ContinuousEtchPit(benchmark::State &state)
{
    etch<Core::Operations::ContinuosWetEtching>(state, true);
}

void atSizes(benchmark::internal::Benchmark *subject)
{
    subject->Arg(Benchmarks::Small.x)->Arg(Benchmarks::Medium.x)->Unit(benchmark::kMillisecond);
    subject->UseRealTime();
}

void atSizesAndThreads(benchmark::internal::Benchmark *subject)
{
    for (const Size &size : {Benchmarks::Small, Benchmarks::Medium})
        for (const int threads : {1, 2})
            subject->Args({size.x, threads});
    subject->Unit(benchmark::kMillisecond)->UseRealTime();
}

BENCHMARK(BM_SiliconLatticeFloor)->Apply(atSizes);
BENCHMARK(BM_SiliconLattice)->Apply(atSizes);
BENCHMARK(BM_LookAtEveryAtom)->Apply(atSizes);
BENCHMARK(BM_WetEtchBare)->Apply(atSizesAndThreads);
BENCHMARK(BM_WetEtchPit)->Apply(atSizesAndThreads);
BENCHMARK(BM_ContinuousEtchPit)->Apply(atSizesAndThreads);

} // namespace
