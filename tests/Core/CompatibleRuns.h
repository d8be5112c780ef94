#pragma once

#include "CompatibleFrontRule.h"
#include "DistanceFrontRuns.h"
#include "DopingRules.h"
#include "FrontGuarantees.h"
#include "OxidationRule.h"

#include "Core/Operations/IonImplantation/IonImplantation.h"
#include "Core/Operations/SiOxidation/SimpleSiOxidation.h"
#include "Core/Operations/SimpleDoping/SimpleDoping.h"
#include "Model/Process/ProcessFactory.h"
#include "Support/Volumes.h"

#include <QString>

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <ostream>
#include <random>
#include <string>
#include <vector>

/// Runs of the engines beside their rules.
namespace CompatibleFrontRule {

using DistanceFrontRule::agree;
using DistanceFrontRule::BusyPool;
using DistanceFrontRule::FrontGuarantees;
using DistanceFrontRule::hasSameAtoms;
using DistanceFrontRule::hasSameFields;
using DistanceFrontRule::hasSameMaterial;
using DistanceFrontRule::hasSameMaterialAndFront;
using DistanceFrontRule::Materials;
using DistanceFrontRule::Sample;
using DistanceFrontRule::TotalVolume;
using InBetween = std::function<void()>;

/// Changes the registry of processes; the built-in one is back afterwards.
class ChangedRegistry final
{
public:
    ChangedRegistry() = default;
    /// The process of this name has these compatible materials.
    ChangedRegistry(const QString &name, const MaterialSet &compatible)
    {
        setCompatible(name, compatible);
    }
    ~ChangedRegistry() { Model::Process::ProcessFactory::instance()->loadDefaultProcesses(); }
    ChangedRegistry(const ChangedRegistry &) = delete;
    ChangedRegistry &operator=(const ChangedRegistry &) = delete;

    void setCompatible(const QString &name, const MaterialSet &compatible)
    {
        const auto registry = Model::Process::ProcessFactory::instance();
        Model::Process::Process process = registry->processByName(name);
        process.setCompatibleMaterialIds({compatible.begin(), compatible.end()});
        EXPECT_TRUE(registry->updateProcess(process)) << name.toStdString();
    }
    void rename(const QString &name, const QString &newName)
    {
        const auto registry = Model::Process::ProcessFactory::instance();
        const Model::Process::Process process = registry->processByName(name);
        EXPECT_TRUE(
            registry->updateProcess({newName, process.id(), process.compatibleMaterialIds()}));
    }
};

/// What a run gets. Printed by tests that fail.
template <typename Process>
struct Case
{
    Support::Grid grid;
    Materials materials;
    Process process;
    MaterialSet compatible;

    /// The same, for what is shared with other processes.
    DistanceFrontRule::Case base() const { return {grid, materials, {false, 0, 0.0f}}; }
};

inline std::ostream &operator<<(std::ostream &stream, const Doping &process)
{
    return stream << "doping with " << process.material << " to " << process.depth;
}
inline std::ostream &operator<<(std::ostream &stream, const Implantation &process)
{
    return stream << "implantation of " << process.material << " at " << process.depth
                  << ", annealed by " << process.annealing;
}
inline std::ostream &operator<<(std::ostream &stream, const Oxidation &process)
{
    return stream << "oxidation to " << process.thickness;
}
template <typename Process>
std::ostream &operator<<(std::ostream &stream, const Case<Process> &given)
{
    const Support::Grid &grid = given.grid;
    stream << given.process << ", " << grid.sizeX << " x " << grid.sizeY << " x " << grid.sizeZ
           << " cells of " << grid.cellSizeX << " x " << grid.cellSizeY << " x " << grid.cellSizeZ
           << ", compatible";
    for (const std::uint32_t material : given.compatible)
        stream << ' ' << material;
    return stream;
}

/// The name of the record whose list counts.
inline QString recordOf(const Doping &)
{
    return QStringLiteral("Simple Doping");
}
inline QString recordOf(const Implantation &)
{
    return QStringLiteral("Simple Doping");
}
inline QString recordOf(const Oxidation &)
{
    return QStringLiteral("Simple Si Oxidation");
}

inline void buildAndRun(TotalVolume &volume, const Doping &process, const InBetween &inBetween)
{
    Core::Operations::SimpleDoping engine(&volume, process.material, process.depth);
    inBetween();
    engine.runDoping();
}
inline void buildAndRun(TotalVolume &volume, const Implantation &process,
                        const InBetween &inBetween)
{
    Core::Operations::IonImplantation engine(&volume, process.material, process.depth,
                                             process.annealing);
    inBetween();
    engine.runImplantation();
}
inline void buildAndRun(TotalVolume &volume, const Oxidation &process, const InBetween &inBetween)
{
    Core::Operations::SimpleSiOxidation engine(&volume, 1.0);
    inBetween();
    engine.oxidateTo(process.thickness);
}

/// What both arrays hold before a run.
struct Start
{
    Cells voxels;
    Cells nextVoxels;
};

/// What earlier processes left behind, otherwise in either array.
template <typename Process>
Start leftOver(const Case<Process> &given)
{
    return {DistanceFrontRule::leftovers(given.base()),
            DistanceFrontRule::nextLeftovers(given.base())};
}

/// What a volume holds that nothing has been done to.
template <typename Process>
Start fresh(const Case<Process> &given)
{
    Cells cells(given.materials.size());
    for (std::size_t i = 0; i < cells.size(); ++i)
        cells[i].material = given.materials[i];
    return {cells, cells};
}

inline DopingRule ruleOf(const Case<Doping> &given, int threads, const Start &start)
{
    DopingRule rule(given.grid, given.process, given.compatible, threads, start.voxels,
                    start.nextVoxels);
    rule.run();
    return rule;
}
inline ImplantationRule ruleOf(const Case<Implantation> &given, int threads, const Start &start)
{
    ImplantationRule rule(given.grid, given.process, given.compatible, threads, start.voxels,
                          start.nextVoxels);
    rule.run();
    return rule;
}
inline OxidationRule ruleOf(const Case<Oxidation> &given, int threads, const Start &start)
{
    OxidationRule rule(given.grid, given.process, given.compatible, threads, start.voxels,
                       start.nextVoxels);
    rule.run();
    return rule;
}

/// A volume after a run whose engine was built for so many threads.
template <typename Process>
Sample after(
    const Case<Process> &given, int threads, const Start &start, const InBetween &inBetween = [] {})
{
    const ChangedRegistry registry(recordOf(given.process), given.compatible);
    Sample sample(given.base(), start.voxels, start.nextVoxels);
    sample.runWith(threads,
                   [&](TotalVolume &volume) { buildAndRun(volume, given.process, inBetween); });
    EXPECT_TRUE(sample.isInPlace());
    return sample;
}
template <typename Process>
Sample after(const Case<Process> &given, int threads)
{
    return after(given, threads, leftOver(given));
}

/// Every field of both arrays is that of the rule.
template <typename Process>
void expectSame(const Case<Process> &given, const Sample &sample, const Front &rule)
{
    EXPECT_TRUE(agree(given.base(), sample.voxels(), rule.voxels(), hasSameFields));
    EXPECT_TRUE(agree(given.base(), sample.nextVoxels(), rule.nextVoxels(), hasSameFields));
}

/// Runs with one strip, on the pool and on the calling thread, on what earlier processes left and
/// on a fresh volume, and compares with the rule.
template <typename Process>
void expectRule(const Case<Process> &given)
{
    for (const int threads : {1, int(given.grid.sizeX) / 2 + 1}) {
        for (const Start &start : {leftOver(given), fresh(given)}) {
            SCOPED_TRACE(testing::Message() << given << ", " << threads << " threads");
            expectSame(given, after(given, threads, start), ruleOf(given, threads, start));
        }
    }
}

/// Runs the strips one after the other and compares with the rule for those strips.
template <typename Process>
void expectRuleOfStrips(const Case<Process> &given, int threads)
{
    SCOPED_TRACE(testing::Message() << given << ", " << threads << " threads");
    const Start start = leftOver(given);
    std::optional<BusyPool> pool;
    const Sample sample = after(given, threads, start, [&] { pool.emplace(); });
    EXPECT_TRUE(pool->isBusy());
    expectSame(given, sample, ruleOf(given, threads, start));
}

/// Expects these materials in both arrays after a run with one strip on the pool, and all else by
/// the rule.
template <typename Process>
void expectMaterials(const Case<Process> &given, const Support::MaterialRule &rule)
{
    const Materials expected = Support::materialsBy(given.grid, rule);
    for (const Start &start : {leftOver(given), fresh(given)}) {
        const Sample sample = after(given, 1, start);
        EXPECT_EQ(sample.materials(), expected) << given;
        EXPECT_EQ(sample.nextMaterials(), expected) << given;
    }
    expectRule(given);
}

/// Expects no material to change, with several strips too.
template <typename Process>
void expectUnchanged(const Case<Process> &given)
{
    for (const int threads : {1, 2, 3, int(given.grid.sizeX) / 2 + 1}) {
        for (const Start &start : {leftOver(given), fresh(given)}) {
            const Sample sample = after(given, threads, start);
            EXPECT_EQ(sample.materials(), given.materials) << given << ", " << threads;
            EXPECT_EQ(sample.nextMaterials(), given.materials) << given << ", " << threads;
        }
    }
    expectRule(given);
}

/// Runs on a fresh volume, on as many threads as told, and expects what holds for every order of
/// the strips. Cell sizes have to be powers of two. undoTheEnd(rule, cells) puts right in the cells
/// that a run has left what comes after the last step.
template <typename Process, typename Undo>
void expectGuarantees(const Case<Process> &given, int threads, float farthest,
                      bool differAtTheStart, const Undo &undoTheEnd)
{
    SCOPED_TRACE(testing::Message() << given << ", " << threads << " threads");
    const Start start = fresh(given);
    const auto rule = ruleOf(given, 1, start);
    const Sample sample = after(given, threads, start);
    EXPECT_TRUE(agree(given.base(), sample.nextVoxels(), sample.voxels(), hasSameMaterial));
    Cells voxels = sample.voxels();
    undoTheEnd(rule, voxels);
    Cells oneStrip = rule.voxels();
    undoTheEnd(rule, oneStrip);
    FrontGuarantees({given.grid, 0, farthest, rule.stepCount(), stepVectorsOf(given.grid),
                     DistanceFrontRule::stripsOf(given.grid, threads), rule.initialized(),
                     rule.firstCells(), oneStrip,
                     [&](const Cell &cell) { return rule.taken(cell); },
                     [&](const Cell &cell) { return rule.limit2(cell); },
                     differAtTheStart ? rule.initializedNext() : Cells()})
        .expectFor(voxels);
}
template <typename Process>
void expectGuarantees(const Case<Process> &given, int threads, float farthest,
                      bool differAtTheStart)
{
    expectGuarantees(given, threads, farthest, differAtTheStart, [](auto &, auto &) {});
}

/// Expects that a process of another name does not count: the set is empty, nothing changes.
template <typename Process>
void expectUnchangedWhenRenamed(const Case<Process> &given)
{
    ChangedRegistry registry;
    registry.rename(recordOf(given.process), QStringLiteral("Renamed"));
    Case<Process> withoutList = given;
    withoutList.compatible.clear();
    const Start start = leftOver(given);
    for (const int threads : {1, 3, int(given.grid.sizeX) / 2 + 1}) {
        Sample sample(given.base(), start.voxels, start.nextVoxels);
        sample.runWith(threads,
                       [&](TotalVolume &volume) { buildAndRun(volume, given.process, [] {}); });
        EXPECT_EQ(sample.materials(), given.materials);
        EXPECT_EQ(sample.nextMaterials(), given.materials);
        expectSame(given, sample, ruleOf(withoutList, threads, start));
    }
}

/// Expects that the list counts that the process has when the engine is constructed.
template <typename Process>
void expectListOfConstruction(const Case<Process> &given, const MaterialSet &later)
{
    ChangedRegistry registry;
    const Start start = leftOver(given);
    const Sample sample =
        after(given, 1, start, [&] { registry.setCompatible(recordOf(given.process), later); });
    expectSame(given, sample, ruleOf(given, 1, start));
}

/// Expects that the construction of an engine changes no cell and takes no array, or this would
/// never return.
template <typename Process>
void expectConstructionLeavesTheVolumeAlone(const Case<Process> &given,
                                            const std::function<void(TotalVolume &)> &construct)
{
    const Start start = leftOver(given);
    Sample sample(given.base(), start.voxels, start.nextVoxels);
    sample.runWith(2, construct);
    EXPECT_TRUE(agree(given.base(), sample.voxels(), start.voxels, hasSameFields));
    EXPECT_TRUE(agree(given.base(), sample.nextVoxels(), start.nextVoxels, hasSameFields));
}

/// Sizes of one cell along one axis and more.
inline const std::vector<Support::Grid> &thinGrids()
{
    static const std::vector<Support::Grid> grids = {{1, 9, 12}, {9, 1, 12}, {9, 12, 1}, {1, 1, 14},
                                                     {1, 14, 1}, {14, 1, 1}, {1, 9, 70}, {2, 2, 2}};
    return grids;
}

/// A volume of random cells of the materials given, as often as they stand there, and of void.
inline Materials randomOf(const Support::Grid &grid, std::uint32_t seed,
                          std::uint32_t filledPercent, const Materials &materials)
{
    std::mt19937 random(seed);
    return Support::materialsBy(grid, [&](auto, auto, auto) -> std::uint32_t {
        const bool filled = random() % 100 < filledPercent;
        const std::uint32_t material = materials[random() % materials.size()];
        return filled ? material : 0;
    });
}

/// Random sizes, of one cell along an axis too, of cubes and of other cells.
inline Support::Grid randomGrid(std::mt19937 &random)
{
    const std::vector<Support::Grid> cells = {
        {0, 0, 0}, {0, 0, 0, 1.0f, 1.0f, 0.35f}, {0, 0, 0, 0.3f, 0.7f, 0.1f}};
    Support::Grid grid = cells[random() % cells.size()];
    grid.sizeX = 1 + random() % 10;
    grid.sizeY = 1 + random() % 10;
    grid.sizeZ = random() % 5 == 0 ? 60 + random() % 10 : 1 + random() % 14;
    return grid;
}

/// Cells of a passage that winds through one plane of y, so that a front needs a step a cell and
/// still stays near its source. Counted from the source at its one end, which is 0.
inline std::vector<Place> windingPassage()
{
    std::vector<Place> cells;
    for (int row = 0; row < 5; ++row) {
        for (int i = 0; i < 7; ++i)
            cells.push_back({row % 2 == 0 ? 1 + i : 7 - i, 1, 1 + 2 * row});
        cells.push_back({row % 2 == 0 ? 7 : 1, 1, 2 + 2 * row});
    }
    return cells;
}
/// The volume that it lies in.
inline Support::Grid windingGrid(float cellSize = 1.0f)
{
    return {9, 3, 12, cellSize, cellSize, cellSize};
}
/// A volume of one material with the passage in another, and the source in a third.
inline Materials windingMaterials(std::uint32_t wall, std::uint32_t passage, std::uint32_t source)
{
    const Support::Grid grid = windingGrid();
    Materials materials(grid.cells(), wall);
    for (const Place &at : windingPassage())
        materials[indexOf(grid, at)] = passage;
    materials[indexOf(grid, windingPassage().front())] = source;
    return materials;
}

/// How many cells of the passage are of the material, from the first behind the source on; -1 if
/// others are besides.
inline int filledFromTheSource(const Materials &materials, std::uint32_t material)
{
    const std::vector<Place> cells = windingPassage();
    int count = 0;
    for (std::size_t i = 1; i < cells.size(); ++i) {
        if (materials[indexOf(windingGrid(), cells[i])] != material)
            continue;
        if (int(i) != count + 1)
            return -1;
        ++count;
    }
    return count;
}

} // namespace CompatibleFrontRule
