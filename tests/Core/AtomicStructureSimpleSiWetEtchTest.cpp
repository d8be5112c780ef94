#include "Core/Operations/SiEtching/AtomicStructureSimpleSiWetEtch.h"

#include "SiEtchingRuns.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <future>
#include <limits>
#include <map>
#include <random>
#include <set>
#include <string>
#include <vector>

using namespace SiEtchingRuns;

namespace {

constexpr Process bonds = Process::Bonds;

Case caseOf(const Grid &grid, const Support::MaterialRule &rule, double depth)
{
    return {grid, Vector3D(0, 0, 0), Support::materialsBy(grid, rule), {etching(bonds, depth)}};
}

/// Silicon to this height, nothing above.
Support::MaterialRule waferOf(std::uint32_t height)
{
    return [height](auto, auto, std::uint32_t z) { return z < height ? silicon : 0U; };
}

std::vector<std::int32_t> atomsOf(TotalVolume &volume)
{
    const std::size_t count = std::size_t{volume.sizeX()} * volume.sizeY() * volume.sizeZ();
    const Voxel *cells = volume.voxels();
    std::vector<std::int32_t> atoms;
    for (std::size_t i = 0; i < count; ++i)
        atoms.push_back(cells[i].atoms());
    volume.releaseVoxels();
    return atoms;
}

std::size_t linesIn(const std::vector<std::string> &lines, const std::string &start)
{
    return std::size_t(std::count_if(lines.begin(), lines.end(), [&start](const std::string &line) {
        return line.rfind("debug: " + start, 0) == 0;
    }));
}

/// Counts what stays and what goes of the atoms that began in silicon, by quarters of height.
struct Planes
{
    std::map<int, unsigned> left;
    std::map<int, unsigned> gone;
};

Planes planesOf(const SiLattice &lattice, double low, double high)
{
    Planes planes;
    for (const SiLattice::Entry &entry : lattice.cells())
        for (unsigned rank = 0; rank < 8; ++rank) {
            const SiAtom &atom = entry.second->atom(rank);
            const Vector3D &place = atom.position();
            if (atom.cellIndex() < 0 || place[0] < low || place[0] > high || place[1] < low ||
                place[1] > high)
                continue;
            ++(atom.state() == 1 ? planes.left : planes.gone)[int(std::lround(place[2] * 4))];
        }
    return planes;
}

LoneAtom::Bond neighbourWith(unsigned seconds)
{
    LoneAtom::Bond bond;
    bond.seconds.assign(seconds, false);
    return bond;
}

LoneAtom::Bond maskNeighbour()
{
    LoneAtom::Bond bond;
    bond.isMask = true;
    return bond;
}

bool staysForAStep(const std::vector<LoneAtom::Bond> &given)
{
    LoneAtom lone(given);
    lone.etch(bonds, 0.25);
    return lone.atom().state() == 1;
}

} // namespace

TEST(AtomicStructureSimpleSiWetEtchTest, RandomVolumesFollowTheRule)
{
    expectRuleOfRandomVolumes(bonds, {1.0f, 1.0f, 1.0f}, true, 1000, 8);
}

TEST(AtomicStructureSimpleSiWetEtchTest, RandomVolumesAwayFromTheOriginFollowTheRule)
{
    expectRuleOfRandomVolumes(bonds, {1.0f, 1.0f, 1.0f}, false, 1100, 5);
}

TEST(AtomicStructureSimpleSiWetEtchTest, RandomVolumesOfFlatCellsFollowTheRule)
{
    // Their height truncates to 0.
    expectRuleOfRandomVolumes(bonds, {1.0f, 1.0f, 0.35f}, true, 1200, 5);
    expectRuleOfRandomVolumes(bonds, {1.0f, 1.0f, 0.35f}, false, 1250, 4);
}

TEST(AtomicStructureSimpleSiWetEtchTest, RandomVolumesOfLargeCellsFollowTheRule)
{
    expectRuleOfRandomVolumes(bonds, {2.0f, 2.0f, 2.0f}, true, 1300, 4);
    expectRuleOfRandomVolumes(bonds, {1.5f, 1.5f, 1.5f}, true, 1350, 4);
    expectRuleOfRandomVolumes(bonds, {1.5f, 2.0f, 1.5f}, false, 1380, 3);
}

TEST(AtomicStructureSimpleSiWetEtchTest, RandomVolumesWhoseColumnsAloneAreOneWideFollowTheRule)
{
    expectRuleOfRandomVolumes(bonds, {1.0f, 2.0f, 0.5f}, true, 1400, 4);
    expectRuleOfRandomVolumes(bonds, {1.0f, 0.75f, 3.0f}, true, 1450, 4);
}

TEST(AtomicStructureSimpleSiWetEtchTest, WafersOfAnyExtentFollowTheRule)
{
    for (const Grid &grid :
         {Grid{8, 8, 4}, Grid{9, 5, 4}, Grid{4, 9, 3}, Grid{1, 6, 3}, Grid{6, 1, 3}}) {
        SCOPED_TRACE(testing::Message()
                     << grid.sizeX << " x " << grid.sizeY << " x " << grid.sizeZ);
        for (const double depth : {0.25, 0.75, 4.0})
            expectRule(caseOf(grid, waferOf(grid.sizeZ - 1), depth));
        // Also those with no room above, or on void.
        expectRule(caseOf(grid, waferOf(grid.sizeZ), 1.0));
        expectRule(caseOf(
            grid, [](auto, auto, auto z) { return z == 0 ? 0U : silicon; }, 1.5));
        expectRule(caseOf(
            grid, [](auto x, auto, auto) { return x == 0 ? 0U : silicon; }, 1.5));
        expectRule(caseOf(
            grid, [](auto, auto y, auto) { return y == 2 ? 0U : silicon; }, 1.5));
    }
}

TEST(AtomicStructureSimpleSiWetEtchTest, StepsAreFourTimesTheDepthRoundedWithHalvesUp)
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const std::pair<double, std::size_t> cases[] = {
        {0.0, 0}, {0.1249, 0}, {0.125, 1},  {0.25, 1}, {0.3749, 1}, {0.375, 2},
        {0.5, 2}, {10.0, 40},  {40.0, 160}, {-0.1, 0}, {-10.0, 0},  {nan, 0}};
    for (const auto &given : cases)
        for (const int threads : {1, 3}) {
            SCOPED_TRACE(testing::Message() << given.first << " by " << threads << " threads");
            const Support::PoolThreads pool(threads);
            const auto volume = latticed({6, 4, 3}, waferOf(2));
            const Fakes::DebugLog log;
            etch(*volume, bonds, given.first);
            EXPECT_EQ(linesIn(log.lines(), "Running etching"), 1U);
            EXPECT_EQ(log.lines().front(), "debug: Running etching");
            for (int t = 0; t < threads; ++t)
                EXPECT_EQ(linesIn(log.lines(),
                                  "Surface list size for thread " + std::to_string(t) + ": "),
                          given.second + 1);
            EXPECT_EQ(linesIn(log.lines(), "Surface list size for thread "),
                      std::size_t(threads) * (given.second + 1));
        }
}

TEST(AtomicStructureSimpleSiWetEtchTest, RunWithoutStepsChangesNoCell)
{
    for (const double depth : {0.0, 0.124, -1.0, std::numeric_limits<double>::quiet_NaN()}) {
        const auto volume = latticed({5, 6, 4}, waferOf(3));
        const Ids materials = Support::materialsOf(*volume);
        const std::vector<std::int32_t> atoms = atomsOf(*volume);
        etch(*volume, bonds, depth);
        EXPECT_EQ(Support::materialsOf(*volume), materials);
        EXPECT_EQ(Support::nextMaterialsOf(*volume), materials);
        EXPECT_EQ(atomsOf(*volume), atoms);
        expectRule(caseOf({5, 6, 4}, waferOf(3), depth));
    }
}

TEST(AtomicStructureSimpleSiWetEtchTest, VolumeWithoutCrystalStaysAsItIs)
{
    for (const int threads : {1, 3}) {
        const Support::PoolThreads pool(threads);
        const auto volume = Support::makeVolume({5, 6, 4}, waferOf(3));
        const Ids materials = Support::materialsOf(*volume);
        etch(*volume, bonds, 4.0);
        EXPECT_FALSE(volume->siLattice());
        EXPECT_EQ(Support::materialsOf(*volume), materials);
        EXPECT_EQ(Support::nextMaterialsOf(*volume), materials);
    }
}

TEST(AtomicStructureSimpleSiWetEtchTest, VolumeWithoutSiliconStaysAsItIs)
{
    for (const std::uint32_t material : {0U, resist}) {
        expectRule(caseOf(
            {5, 4, 3}, [=](auto, auto, auto) { return material; }, 2.0));
        const auto volume = latticed({5, 4, 3}, [=](auto, auto, auto) { return material; });
        etch(*volume, bonds, 2.0);
        EXPECT_EQ(Support::materialsOf(*volume), Ids(60, material));
        EXPECT_TRUE(volume->siLattice()->maskAtoms().empty());
    }
}

TEST(AtomicStructureSimpleSiWetEtchTest, SingleCellOfSiliconInVoidGoesWhole)
{
    const Grid grid{5, 5, 5};
    const std::size_t middle = grid.index(2, 2, 2);
    const auto rule = [](auto x, auto y, auto z) {
        return x == 2 && y == 2 && z == 2 ? silicon : 0U;
    };
    expectRule(caseOf(grid, rule, 0.25));
    expectRule(caseOf(grid, rule, 10.0));
    const auto volume = latticed(grid, rule);
    ASSERT_GT(atomsOf(*volume)[middle], 0);
    etch(*volume, bonds, 10.0);
    EXPECT_EQ(Support::materialsOf(*volume), Ids(grid.cells(), 0));
    EXPECT_EQ(atomsOf(*volume)[middle], 0);
    // Alone in the volume it is held from all sides.
    const auto alone = latticed({1, 1, 1}, [](auto, auto, auto) { return silicon; });
    etch(*alone, bonds, 10.0);
    EXPECT_EQ(Support::materialsOf(*alone), Ids{silicon});
}

TEST(AtomicStructureSimpleSiWetEtchTest, DepthBeyondTheWaferEndsAtItsBottom)
{
    // Over void nothing stays that the walls do not hold; what stays is what the rule leaves.
    for (const double depth : {40.0, 100.0})
        expectRule(caseOf({7, 6, 4}, waferOf(2), depth));
    const auto volume = latticed({14, 14, 3}, waferOf(2));
    etch(*volume, bonds, 100.0);
    EXPECT_TRUE(planesOf(*volume->siLattice(), 5, 9).left.empty());
    EXPECT_FALSE(planesOf(*volume->siLattice(), 5, 9).gone.empty());
}

TEST(AtomicStructureSimpleSiWetEtchTest, FlatTopLosesOnePlaneInAStep)
{
    const unsigned height = 3;
    for (unsigned steps = 0; steps <= 9; ++steps)
        for (const int threads : {1, 2, 5}) {
            const Support::PoolThreads pool(threads);
            const auto volume = latticed({12, 12, height + 1}, waferOf(height));
            etch(*volume, bonds, steps * 0.25);
            // Away from what the sides hold.
            const Planes planes = planesOf(*volume->siLattice(), 4, 8);
            for (int plane = 0; plane < int(4 * height); ++plane) {
                SCOPED_TRACE(testing::Message() << "plane " << plane << ", " << steps << " steps");
                const bool isLeft = plane < int(4 * height - steps);
                EXPECT_EQ(planes.left.count(plane), isLeft ? 1U : 0U);
                EXPECT_EQ(planes.gone.count(plane), isLeft ? 0U : 1U);
            }
        }
}

TEST(AtomicStructureSimpleSiWetEtchTest, AtomWithThreeBondsAndNineSecondNeighboursStays)
{
    EXPECT_TRUE(staysForAStep({neighbourWith(3), neighbourWith(3), neighbourWith(3)}));
    EXPECT_TRUE(staysForAStep({maskNeighbour(), neighbourWith(3), neighbourWith(3)}));
    EXPECT_TRUE(staysForAStep({maskNeighbour(), maskNeighbour(), neighbourWith(3)}));
    EXPECT_TRUE(staysForAStep({maskNeighbour(), maskNeighbour(), maskNeighbour()}));
    // As long as it likes.
    LoneAtom lone({neighbourWith(3), neighbourWith(3), neighbourWith(3)});
    lone.etch(bonds, 25.0);
    EXPECT_EQ(lone.atom().state(), 1U);
}

TEST(AtomicStructureSimpleSiWetEtchTest, AtomWithThreeBondsAndEightSecondNeighboursGoes)
{
    EXPECT_FALSE(staysForAStep({neighbourWith(3), neighbourWith(3), neighbourWith(2)}));
    EXPECT_FALSE(staysForAStep({neighbourWith(2), neighbourWith(3), neighbourWith(3)}));
    EXPECT_FALSE(staysForAStep({maskNeighbour(), neighbourWith(2), neighbourWith(3)}));
    EXPECT_FALSE(staysForAStep({maskNeighbour(), maskNeighbour(), neighbourWith(2)}));
    EXPECT_FALSE(staysForAStep({neighbourWith(0), neighbourWith(0), neighbourWith(0)}));
}

TEST(AtomicStructureSimpleSiWetEtchTest, AtomWithTwoBondsOrFewerGoes)
{
    EXPECT_FALSE(staysForAStep({neighbourWith(3), neighbourWith(3)}));
    EXPECT_FALSE(staysForAStep({maskNeighbour(), maskNeighbour()}));
    EXPECT_FALSE(staysForAStep({maskNeighbour()}));
    EXPECT_FALSE(staysForAStep({neighbourWith(3)}));
    EXPECT_FALSE(staysForAStep({}));
}

TEST(AtomicStructureSimpleSiWetEtchTest, SurfaceUnderResistIsNotEtched)
{
    const Grid grid{7, 6, 5};
    const auto rule = [](auto, auto, auto z) { return z < 3 ? silicon : z < 4 ? resist : 0U; };
    const auto volume = latticed(grid, rule);
    const std::vector<std::int32_t> atoms = atomsOf(*volume);
    etch(*volume, bonds, 10.0);
    EXPECT_EQ(atomsOf(*volume), atoms);
    EXPECT_EQ(Support::materialsOf(*volume), Support::materialsBy(grid, rule));
    EXPECT_FALSE(volume->siLattice()->maskAtoms().empty());
    expectRule(caseOf(grid, rule, 10.0));
}

TEST(AtomicStructureSimpleSiWetEtchTest, SidesOfTheVolumeHoldTheAtomsThere)
{
    const Grid grid{6, 5, 4};
    const auto volume = latticed(grid, [](auto, auto, auto) { return silicon; });
    const std::vector<std::int32_t> atoms = atomsOf(*volume);
    etch(*volume, bonds, 10.0);
    EXPECT_EQ(atomsOf(*volume), atoms);
    EXPECT_EQ(Support::materialsOf(*volume), Ids(grid.cells(), silicon));
}

TEST(AtomicStructureSimpleSiWetEtchTest, CellIsSiliconUntilItsLastAtomHasGone)
{
    const Grid grid{9, 9, 4};
    bool someWereLeftInPart = false;
    for (unsigned steps = 1; steps <= 9; ++steps) {
        const auto volume = latticed(grid, waferOf(3));
        const std::vector<std::int32_t> before = atomsOf(*volume);
        etch(*volume, bonds, steps * 0.25);
        std::vector<std::int32_t> counted(grid.cells(), 0);
        for (const SiLattice::Entry &entry : volume->siLattice()->cells())
            for (unsigned rank = 0; rank < 8; ++rank) {
                const SiAtom &atom = entry.second->atom(rank);
                if (atom.cellIndex() >= 0 && atom.state() == 1)
                    ++counted[std::size_t(atom.cellIndex())];
            }
        EXPECT_EQ(atomsOf(*volume), counted);
        const Ids materials = Support::materialsOf(*volume);
        EXPECT_EQ(Support::nextMaterialsOf(*volume), materials);
        for (std::size_t i = 0; i < grid.cells(); ++i) {
            EXPECT_EQ(materials[i], counted[i] > 0 ? silicon : 0U) << "cell " << i;
            someWereLeftInPart |= counted[i] > 0 && counted[i] < before[i];
        }
    }
    EXPECT_TRUE(someWereLeftInPart);
}

TEST(AtomicStructureSimpleSiWetEtchTest, CellWithTwoAtomsIsSiliconAfterTheFirstAndVoidAfterBoth)
{
    // The counts are set by hand, so that the first or the second of its atoms is the last.
    const Grid grid{5, 5, 2};
    for (const std::int32_t count : {1, 2, 3, 30}) {
        Case given = caseOf(grid, waferOf(1), 0.25);
        Act counts;
        counts.kind = Act::SetAtoms;
        for (std::size_t i = 0; i < grid.cells(); i += 2)
            counts.atoms[i] = {count, count};
        given.acts.insert(given.acts.begin(), counts);
        expectRule(given);
    }
}

TEST(AtomicStructureSimpleSiWetEtchTest, CountsAreTakenFromTheWorkingBuffer)
{
    const Grid grid{5, 5, 2};
    Case given = caseOf(grid, waferOf(1), 0.25);
    Act counts;
    counts.kind = Act::SetAtoms;
    for (std::size_t i = 0; i < grid.cells(); ++i)
        counts.atoms[i] = {50, 7};
    given.acts.insert(given.acts.begin(), counts);
    expectRule(given);
}

TEST(AtomicStructureSimpleSiWetEtchTest, NegativeCountsAreLoggedAndTheRunGoesOn)
{
    const Grid grid{5, 5, 2};
    for (const std::int32_t count : {0, 1, -7}) {
        Case given = caseOf(grid, waferOf(1), 0.5);
        Act counts;
        counts.kind = Act::SetAtoms;
        counts.atoms[grid.index(2, 2, 0)] = {count, count};
        given.acts.insert(given.acts.begin(), counts);
        expectRule(given);
        Sample sample(given);
        sample.play(counts);
        const Fakes::DebugLog log;
        const Support::PoolThreads pool(1);
        sample.play(given.acts.back());
        const std::string text =
            "Negative atom count reached for index: " + std::to_string(grid.index(2, 2, 0)) +
            " count is: ";
        const std::size_t all = linesIn(log.lines(), "Negative atom count reached for index: ");
        EXPECT_GT(all, 0U);
        EXPECT_EQ(linesIn(log.lines(), text), all);
        // From the first count below 0 on, one line a count.
        const int first = std::min(count, 0) - 1;
        for (int i = 0; i < int(all); ++i)
            EXPECT_EQ(std::count(log.lines().begin(), log.lines().end(),
                                 "debug: " + text + std::to_string(first - i)),
                      1);
    }
}

TEST(AtomicStructureSimpleSiWetEtchTest, AtomsOutsideTheVolumeAmongMissingNeighboursAreLogged)
{
    const Case given = caseOf({4, 4, 3}, waferOf(2), 0.25);
    Sample sample(given);
    const Fakes::DebugLog log;
    sample.play(given.acts[0]);
    EXPECT_GT(linesIn(log.lines(), "This wasn't suppose to happen."), 0U);
    EXPECT_EQ(linesIn(log.lines(), "This wasn't suppose to happen."),
              std::size_t(std::count(log.lines().begin(), log.lines().end(),
                                     "debug: This wasn't suppose to happen.")));
    EXPECT_EQ(linesIn(log.lines(), "This wasn't suppose to happen."),
              linesIn(played(given).back().lines(), "This wasn't suppose to happen."));
}

TEST(AtomicStructureSimpleSiWetEtchTest, SecondRunGivesCellsThatAreStillSiliconTheirAtomsBack)
{
    const auto volume = latticed({10, 10, 4}, waferOf(3));
    const std::vector<std::int32_t> before = atomsOf(*volume);
    etch(*volume, bonds, 0.5);
    ASSERT_NE(atomsOf(*volume), before);
    etch(*volume, bonds, 0.0);
    EXPECT_EQ(atomsOf(*volume), before);
    for (const SiLattice::Entry &entry : volume->siLattice()->cells())
        for (unsigned rank = 0; rank < 8; ++rank)
            if (entry.second->atom(rank).cellIndex() >= 0) {
                EXPECT_EQ(entry.second->atom(rank).state(), 1U);
            }
}

TEST(AtomicStructureSimpleSiWetEtchTest, FewerColumnsThanThreadsAreOneStrip)
{
    const Support::PoolThreads pool(5);
    for (const std::uint32_t columns : {4U, 5U}) {
        const auto volume = latticed({columns, 6, 4}, waferOf(3));
        const Fakes::DebugLog log;
        etch(*volume, bonds, 1.0);
        for (unsigned thread = 0; thread < 5; ++thread)
            EXPECT_EQ(linesIn(log.lines(),
                              "Surface list size for thread " + std::to_string(thread) + ":"),
                      thread == 0 || columns == 5 ? 5U : 0U)
                << columns << " columns, thread " << thread;
    }
}

TEST(AtomicStructureSimpleSiWetEtchTest, NeighboursGoByTheirPlaceInTheWorldWhoseverCellsTheyLieIn)
{
    // A column off the origin: atoms near the border of two strips are listed in one and lie in the
    // cells of the other.
    for (unsigned seed = 1700; seed < 1704; ++seed) {
        SCOPED_TRACE(testing::Message() << "seed " << seed);
        std::mt19937 random(seed);
        const Case given = randomCase({8, 6, 4}, Vector3D(1, 0, 0), bonds, random);
        const std::vector<SiEtchingRule::Wafer> wafers = played(given);
        for (const int threads : {2, 3})
            expectWafers(given, wafers, threads, 73U);
    }
}

TEST(AtomicStructureSimpleSiWetEtchTest, AtomThatComesBackIsAddedToTheCountOfTheCurrentCells)
{
    const auto volume = latticed({10, 10, 4}, waferOf(3));
    etch(*volume, bonds, 0.5);
    const std::size_t top = (std::size_t{5} * 10 + 5) * 4 + 2;
    std::int32_t removed = 0;
    for (const SiLattice::Entry &entry : volume->siLattice()->cells())
        for (unsigned rank = 0; rank < 8; ++rank)
            removed += entry.second->atom(rank).cellIndex() == static_cast<std::int32_t>(top) &&
                               entry.second->atom(rank).state() == 0
                           ? 1
                           : 0;
    ASSERT_GT(removed, 0);
    volume->voxels()[top].setAtoms(20);
    volume->nextVoxels()[top].setAtoms(-7);
    volume->releaseVoxels();
    volume->releaseNextVoxels();
    etch(*volume, bonds, 0.0);
    EXPECT_EQ(volume->voxels()[top].atoms(), 20 + removed);
    EXPECT_EQ(volume->nextVoxels()[top].atoms(), 20 + removed);
    volume->releaseVoxels();
    volume->releaseNextVoxels();
}

TEST(AtomicStructureSimpleSiWetEtchTest, SecondRunGoesOnWhereTheFirstHasEmptiedCells)
{
    // Away from the sides a layer of cells is four planes.
    const auto volume = latticed({14, 14, 4}, waferOf(3));
    const boost::shared_ptr<SiLattice> lattice = volume->siLattice();
    etch(*volume, bonds, 1.0);
    etch(*volume, bonds, 1.0);
    EXPECT_EQ(volume->siLattice(), lattice);
    const Planes planes = planesOf(*lattice, 5, 9);
    for (int plane = 0; plane < 12; ++plane) {
        EXPECT_EQ(planes.left.count(plane), plane < 4 ? 1U : 0U) << "plane " << plane;
        EXPECT_EQ(planes.gone.count(plane), plane < 4 ? 0U : 1U) << "plane " << plane;
    }
}

TEST(AtomicStructureSimpleSiWetEtchTest, RunsOfBothEtchesOnOneCrystalFollowTheirRules)
{
    for (unsigned seed = 1500; seed < 1504; ++seed) {
        SCOPED_TRACE(testing::Message() << "seed " << seed);
        std::mt19937 random(seed);
        Case given = randomCase({5, 6, 4}, Vector3D(0, 0, 0), bonds, random);
        for (Act &act : given.acts)
            act.process = random() % 2 == 0 ? bonds : Process::Rates;
        expectRule(given);
    }
}

TEST(AtomicStructureSimpleSiWetEtchTest, RefilledStrippedAndEmptiedCellsFollowTheRule)
{
    const Grid grid{6, 6, 4};
    const auto rule = [](auto x, auto, auto z) { return z < 3 ? silicon : x < 3 ? resist : 0U; };
    const std::vector<std::pair<std::uint32_t, std::uint32_t>> changes = {
        {0, silicon}, {resist, 0}, {silicon, 0}, {0, resist}, {silicon, resist}};
    for (const auto &change : changes)
        for (const bool isHalf : {false, true}) {
            SCOPED_TRACE(testing::Message() << change.first << " to " << change.second);
            Case given = caseOf(grid, rule, 1.5);
            const Wafer etched = played(given).back();
            Act act;
            act.kind = Act::SetMaterials;
            for (std::size_t i = 0; i < grid.cells(); ++i)
                if (etched.voxels()[i].material == change.first && (!isHalf || i % 24 < 12))
                    act.materials[i] = change.second;
            ASSERT_FALSE(act.materials.empty());
            given.acts.push_back(act);
            given.acts.push_back(etching(bonds, 0.75));
            given.acts.push_back(etching(bonds, 2.0));
            expectRule(given);
        }
}

TEST(AtomicStructureSimpleSiWetEtchTest, ResultDoesNotDependOnWhereAtomsLieInMemory)
{
    std::mt19937 random(1600);
    Case given{{8, 7, 6}, Vector3D(0, 0, 0), {}, {}};
    given.materials = Support::materialsBy(given.grid, [&random](auto, auto, auto z) {
        return z < 4 && random() % 8 != 0 ? silicon : 0U;
    });
    given.acts = {etching(bonds, 0.5), etching(bonds, 1.25), etching(bonds, 0.75)};
    const std::vector<Wafer> wafers = played(given);
    std::set<Ids> orders;
    for (const unsigned heapSeed : {0U, 81U, 82U, 83U}) {
        Sample sample(given, heapSeed);
        orders.insert(addressOrder(sample.lattice()));
        for (std::size_t i = 0; i < given.acts.size(); ++i) {
            const Fakes::DebugLog log;
            sample.play(given.acts[i]);
            EXPECT_TRUE(sample.agreesWith(wafers[i])) << "heap of seed " << heapSeed;
        }
    }
// Sanitizers place blocks by themselves.
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
    EXPECT_EQ(orders.size(), 4U);
#endif
}

TEST(AtomicStructureSimpleSiWetEtchTest, AtomsBetweenTwoStripsAreTakenOnce)
{
    // Between the middle columns lie atoms whose place is on the boundary but for rounding.
    for (const std::uint32_t sizeX : {2U, 4U, 8U, 10U})
        for (const double depth : {0.25, 0.5, 1.0, 3.0}) {
            const Case given = caseOf({sizeX, 7, 4}, waferOf(3), depth);
            const std::vector<Wafer> wafers = played(given);
            for (int threads = 1; threads <= int(sizeX); ++threads)
                expectWafers(given, wafers, threads, 0);
        }
}

TEST(AtomicStructureSimpleSiWetEtchTest, EtchUnderAnOpeningStopsAtWallsOfSlowPlanes)
{
    const Grid grid{28, 28, 21};
    const unsigned top = 20;
    const auto isOpen = [](double place) { return place >= 8 && place < 20; };
    const auto rule = [&](unsigned x, unsigned y, unsigned z) {
        return z < top ? silicon : isOpen(x) && isOpen(y) ? 0U : resist;
    };
    // In the plane where the mask begins atoms would lie 1 / sqrt(2) apart, on the axis of the
    // crystal: along x it is in the middle, along y at half the size below 0.
    const double spacing = std::sqrt(0.5);
    const auto rowsFrom = [&](double axis) {
        int rows = 0;
        for (int i = -100; i <= 100; ++i)
            rows += isOpen(axis + i * spacing) ? 1 : 0;
        return rows;
    };
    const int rowsX = rowsFrom(14);
    const int rowsY = rowsFrom(-14);
    const double slope = std::tan(54.7356 * std::acos(-1.0) / 180);
    for (const unsigned steps : {7U, 24U, 60U}) {
        const auto volume = latticed(grid, rule);
        etch(*volume, bonds, steps * 0.25);
        // The x and y of the atoms gone, by planes below the mask.
        std::map<unsigned, std::vector<std::pair<double, double>>> gone;
        for (const SiLattice::Entry &entry : volume->siLattice()->cells())
            for (unsigned rank = 0; rank < 8; ++rank) {
                const SiAtom &atom = entry.second->atom(rank);
                if (atom.cellIndex() < 0 || atom.state() == 1)
                    continue;
                const Vector3D &place = atom.position();
                // Under the resist all is whole.
                EXPECT_TRUE(isOpen(place[0]) && isOpen(place[1]));
                gone[unsigned(std::lround((top - place[2]) * 4))].emplace_back(place[0], place[1]);
            }
        for (unsigned plane = 1; plane < 4 * top; ++plane) {
            SCOPED_TRACE(testing::Message() << steps << " steps, plane " << plane);
            // The bonds upward lie along x and along y by turns, so that walls lean half a spacing
            // a plane and axis, in every second one.
            const int wideX = std::max(0, rowsX - int(plane + 1) / 2);
            const int wideY = std::max(0, rowsY - int(plane) / 2);
            const auto &atoms = gone[plane];
            if (plane > steps || wideX == 0 || wideY == 0) {
                EXPECT_TRUE(atoms.empty());
                continue;
            }
            ASSERT_EQ(int(atoms.size()), wideX * wideY);
            double lowX = 100;
            double highX = -100;
            double lowY = 100;
            double highY = -100;
            for (const auto &place : atoms) {
                lowX = std::min(lowX, place.first);
                highX = std::max(highX, place.first);
                lowY = std::min(lowY, place.second);
                highY = std::max(highY, place.second);
            }
            EXPECT_NEAR(highX - lowX, (wideX - 1) * spacing, 1e-5);
            EXPECT_NEAR(highY - lowY, (wideY - 1) * spacing, 1e-5);
            EXPECT_NEAR((lowX + highX) / 2, 14, 1e-5);
            // As wide as between (111) planes through the edges of the opening.
            const double width = 12 - 2 * plane * 0.25 / slope;
            EXPECT_NEAR(wideX * spacing, width, spacing);
            EXPECT_NEAR(wideY * spacing, width, spacing);
        }
    }
}

TEST(AtomicStructureSimpleSiWetEtchTest, ClosedPitIsNotEtchedFurther)
{
    const Grid grid{14, 14, 8};
    const auto rule = [](unsigned x, unsigned y, unsigned z) {
        return z < 7 ? silicon : x > 4 && x < 9 && y > 4 && y < 9 ? 0U : resist;
    };
    const auto early = latticed(grid, rule);
    etch(*early, bonds, 5.0);
    const auto late = latticed(grid, rule);
    etch(*late, bonds, 20.0);
    EXPECT_EQ(atomsOf(*late), atomsOf(*early));
    EXPECT_EQ(Support::materialsOf(*late), Support::materialsOf(*early));
    EXPECT_NE(Support::materialsOf(*late), Support::materialsBy(grid, rule));
}

TEST(AtomicStructureSimpleSiWetEtchTest, RunWaitsForBothArrays)
{
    for (const bool next : {false, true}) {
        const auto volume = latticed({4, 4, 3}, waferOf(2));
        if (next)
            volume->nextVoxels();
        else
            volume->voxels();
        auto running = std::async(std::launch::async, [&] { etch(*volume, bonds, 1.0); });
        EXPECT_EQ(running.wait_for(std::chrono::milliseconds(30)), std::future_status::timeout);
        if (next)
            volume->releaseNextVoxels();
        else
            volume->releaseVoxels();
        running.get();
        EXPECT_NE(Support::materialsOf(*volume), Support::materialsBy({4, 4, 3}, waferOf(2)));
    }
}

TEST(AtomicStructureSimpleSiWetEtchTest, ConstructionLeavesTheVolumeAlone)
{
    const auto volume = latticed({4, 4, 3}, waferOf(2));
    const std::vector<std::int32_t> atoms = atomsOf(*volume);
    const Fakes::DebugLog log;
    const Core::Operations::AtomicStructureSimpleSiWetEtch engine(volume.get(), 4.0);
    EXPECT_EQ(atomsOf(*volume), atoms);
    EXPECT_TRUE(log.lines().empty());
}
