#include "Core/Operations/SiEtching/ContinuosWetEtching.h"

#include "SiEtchingRuns.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <future>
#include <limits>
#include <random>
#include <set>
#include <string>
#include <vector>

using namespace SiEtchingRuns;
using Core::Operations::AtomicConfiguration;
using Core::Operations::ContinuosWetEtching;
using SiEtchingRule::Configuration;
using SiEtchingRule::configurations;

namespace {

constexpr Process rates = Process::Rates;

Case caseOf(const Grid &grid, const Support::MaterialRule &rule, double depth)
{
    return {grid, Vector3D(0, 0, 0), Support::materialsBy(grid, rule), {etching(rates, depth)}};
}

Support::MaterialRule waferOf(std::uint32_t height)
{
    return [height](auto, auto, std::uint32_t z) { return z < height ? silicon : 0U; };
}

/// Four bonds have at most three second neighbours each.
bool canBeBuilt(const Configuration &row)
{
    return row.ns1 + row.nb1 <= 3 && row.ns2 + row.nb2 <= 3 * (row.ns1 + row.nb1);
}

/// Bonds that give the counts: bulk neighbours have all three others, surface neighbours two, or
/// three where they are not bonded back.
std::vector<LoneAtom::Bond> bondsOf(const Configuration &row)
{
    std::vector<LoneAtom::Bond> bonds(row.ns1 + row.nb1);
    unsigned left = row.ns2 + row.nb2;
    unsigned surface = row.ns2;
    std::vector<unsigned> seconds(bonds.size(), 0);
    for (unsigned i = row.ns1; i < bonds.size(); ++i) {
        seconds[i] = 3;
        left -= 3;
    }
    for (const unsigned limit : {2U, 3U})
        for (unsigned i = 0; i < row.ns1; ++i)
            while (left > 0 && seconds[i] < limit) {
                ++seconds[i];
                --left;
            }
    for (unsigned i = 0; i < bonds.size(); ++i) {
        bonds[i].holdsBack = i >= row.ns1 || seconds[i] < 3;
        for (unsigned j = 0; j < seconds[i]; ++j) {
            bonds[i].seconds.push_back(surface == 0);
            surface -= surface == 0 ? 0 : 1;
        }
    }
    return bonds;
}

/// What the steps leave of an atom: 0 when it has gone.
float massAfter(unsigned steps, double rate)
{
    float mass = 1.0f;
    for (unsigned i = 0; i < steps; ++i) {
        const double remaining = double(mass) - rate * 0.1;
        if (remaining < 1e-6)
            return 0.0f;
        mass = static_cast<float>(remaining);
    }
    return mass;
}

void expectMasses(const Configuration &row, const std::vector<unsigned> &steps)
{
    for (const unsigned count : steps) {
        SCOPED_TRACE(testing::Message() << count << " steps");
        const Fakes::DebugLog log;
        LoneAtom lone(bondsOf(row));
        lone.etch(rates, count * 0.25);
        const float mass = massAfter(count, row.rate);
        EXPECT_TRUE(isSameBits(lone.atom().mass(), mass)) << lone.atom().mass() << " for " << mass;
        EXPECT_EQ(lone.atom().state(), mass == 0.0f ? 0U : 1U);
    }
}

} // namespace

TEST(ContinuosWetEtchingTest, TableGivesEachConfigurationItsNumber)
{
    const auto volume = latticed({1, 1, 1}, waferOf(1));
    const ContinuosWetEtching engine(volume.get(), 1.0);
    const Fakes::DebugLog log;
    for (unsigned i = 0; i < configurations.size(); ++i) {
        const Configuration &row = configurations[i];
        EXPECT_EQ(engine.getAtomicConfiguration(row.ns1, row.nb1, row.ns2, row.nb2), i);
    }
    EXPECT_TRUE(log.lines().empty());
}

TEST(ContinuosWetEtchingTest, TableGivesEachConfigurationItsRateAndTheUnexpectedOneNone)
{
    const auto volume = latticed({1, 1, 1}, waferOf(1));
    const ContinuosWetEtching engine(volume.get(), 1.0);
    for (unsigned i = 0; i < configurations.size(); ++i)
        EXPECT_EQ(engine.rate(static_cast<AtomicConfiguration>(i)), configurations[i].rate) << i;
    EXPECT_EQ(engine.rate(Core::Operations::Unexpected), 0.0);
}

TEST(ContinuosWetEtchingTest, AllOtherCountsAreUnexpectedAndLogged)
{
    const auto volume = latticed({1, 1, 1}, waferOf(1));
    const ContinuosWetEtching engine(volume.get(), 1.0);
    const Fakes::DebugLog log;
    std::vector<std::string> lines;
    const auto check = [&](unsigned ns1, unsigned nb1, unsigned ns2, unsigned nb2) {
        const unsigned expected = SiEtchingRule::configurationOf(ns1, nb1, ns2, nb2);
        if (expected == 33)
            lines.push_back(SiEtchingRule::unexpectedLine(ns1, nb1, ns2, nb2));
        ASSERT_EQ(engine.getAtomicConfiguration(ns1, nb1, ns2, nb2), expected)
            << ns1 << ", " << nb1 << ", " << ns2 << ", " << nb2;
    };
    for (unsigned ns1 = 0; ns1 <= 4; ++ns1)
        for (unsigned nb1 = 0; nb1 <= 4; ++nb1)
            for (unsigned ns2 = 0; ns2 <= 12; ++ns2)
                for (unsigned nb2 = 0; nb2 <= 12; ++nb2)
                    check(ns1, nb1, ns2, nb2);
    // What is beyond counts is not folded into the table.
    const unsigned beyond[] = {16, 256, 65536, 2147483648U, 4294967295U};
    for (const Configuration &row : configurations)
        for (const unsigned more : beyond) {
            check(row.ns1 + more, row.nb1, row.ns2, row.nb2);
            check(row.ns1, row.nb1 + more, row.ns2, row.nb2);
            check(row.ns1, row.nb1, row.ns2 + more, row.nb2);
            check(row.ns1, row.nb1, row.ns2, row.nb2 + more);
        }
    EXPECT_GE(lines.size(), 4225U - 33U);
    EXPECT_EQ(log.lines(), lines);
    EXPECT_EQ(Core::Operations::Unexpected, 33U);
    EXPECT_EQ(Core::Operations::AtomicConfigurations, 33U);
}

TEST(ContinuosWetEtchingTest, ThreeSurfaceNeighboursAloneAreUnexpected)
{
    const auto volume = latticed({1, 1, 1}, waferOf(1));
    const ContinuosWetEtching engine(volume.get(), 1.0);
    const Fakes::DebugLog log;
    EXPECT_EQ(engine.getAtomicConfiguration(3, 0, 0, 0), Core::Operations::Unexpected);
    EXPECT_EQ(log.lines(),
              std::vector<std::string>{"debug: Unexpected configuration found (ns1, nb1, ns2, "
                                       "nb2): (3,0,0,0)"});
}

TEST(ContinuosWetEtchingTest, EachConfigurationThatBondsAllowLosesMassByItsRate)
{
    std::set<unsigned> built;
    for (unsigned i = 0; i < configurations.size(); ++i) {
        if (!canBeBuilt(configurations[i]))
            continue;
        SCOPED_TRACE(testing::Message() << "configuration " << i);
        built.insert(i);
        expectMasses(configurations[i], {1, 2, 3, 4});
    }
    // The others have more second neighbours than three a bond.
    EXPECT_EQ(built,
              (std::set<unsigned>{4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 27, 28}));
}

TEST(ContinuosWetEtchingTest, AtomOfConfigurationNineIsGoneInTheSecondStep)
{
    for (const unsigned steps : {1U, 2U}) {
        LoneAtom lone(bondsOf(configurations[9]));
        lone.etch(rates, steps * 0.25);
        EXPECT_EQ(lone.atom().state(), steps == 1 ? 1U : 0U);
        EXPECT_FLOAT_EQ(lone.atom().mass(), steps == 1 ? 1.0f - 0.6449f : 0.0f);
    }
}

TEST(ContinuosWetEtchingTest, AtomWithThreeBulkNeighboursLastsMoreThanThousandSteps)
{
    for (const unsigned i : {4U, 5U, 6U}) {
        SCOPED_TRACE(testing::Message() << "configuration " << i);
        LoneAtom lone(bondsOf(configurations[i]));
        lone.etch(rates, 0.25);
        EXPECT_FLOAT_EQ(lone.atom().mass(), 1.0f - 0.000867f);
        unsigned last = 1;
        while (massAfter(last + 1, configurations[i].rate) > 0.0f)
            ++last;
        // 1 / 0.000867 is 1153.4.
        EXPECT_EQ(last, 1153U);
        expectMasses(configurations[i], {1000, last, last + 1});
    }
}

TEST(ContinuosWetEtchingTest, UnexpectedNeighbourhoodsAreLoggedInEachStepAndStay)
{
    const Support::PoolThreads pool(1);
    LoneAtom lone({{}, {}, {}});
    const Fakes::DebugLog log;
    lone.etch(rates, 5.0);
    EXPECT_EQ(lone.atom().state(), 1U);
    EXPECT_EQ(lone.atom().mass(), 1.0f);
    EXPECT_EQ(std::count(log.lines().begin(), log.lines().end(),
                         SiEtchingRule::unexpectedLine(3, 0, 0, 0)),
              20);
}

TEST(ContinuosWetEtchingTest, AtomWithFourBondsStaysWithoutALookUp)
{
    // Two surface and two bulk neighbours, one of them removed.
    LoneAtom::Bond bulk;
    bulk.seconds = {false, true, true};
    LoneAtom lone({{}, bulk, bulk, {}});
    lone.neighbour(3).setState(0);
    lone.neighbour(3).setCellIndex(lone.atom().cellIndex() + 1);
    const Fakes::DebugLog log;
    lone.etch(rates, 5.0);
    EXPECT_EQ(lone.atom().bondCount(), 3U);
    EXPECT_EQ(lone.atom().state(), 1U);
    EXPECT_EQ(lone.atom().mass(), 1.0f);
    const std::string label = "debug: Unexpected configuration found (ns1, nb1, ns2, nb2): (";
    for (const std::string &line : log.lines())
        if (line.rfind(label, 0) == 0) {
            EXPECT_LT(line[label.size()] - '0' + line[label.size() + 2] - '0', 4) << line;
        }
}

TEST(ContinuosWetEtchingTest, MassBelowAMillionthGoesAndAboveItStays)
{
    // No 32-bit mass is a millionth: the nearest is just below. A neighbour of an atom that goes in
    // the second step is looked at from the third on, with the mass that it was given.
    LoneAtom::Bond surface;
    surface.seconds = {false, false};
    LoneAtom::Bond bulk;
    bulk.seconds = {true, true, true};
    LoneAtom::Bond mixed;
    mixed.seconds = {false, true, true};
    const float below = 1e-6f;
    ASSERT_LT(double(below), 1e-6);
    const float above = std::nextafter(below, 1.0f);
    ASSERT_GT(double(above), 1e-6);
    for (const float mass : {0.0f, below, above, 0.5f})
        for (const unsigned steps : {2U, 3U, 9U}) {
            SCOPED_TRACE(testing::Message() << mass << ", " << steps << " steps");
            LoneAtom lone({surface, bulk, mixed});
            lone.neighbour(0).setMass(mass);
            lone.etch(rates, steps * 0.25);
            ASSERT_EQ(lone.atom().state(), 0U);
            const bool stays = steps == 2 || mass >= above;
            EXPECT_EQ(lone.neighbour(0).state(), stays ? 1U : 0U);
            EXPECT_TRUE(isSameBits(lone.neighbour(0).mass(), stays ? mass : 0.0f));
        }
}

TEST(ContinuosWetEtchingTest, RandomVolumesFollowTheRule)
{
    expectRuleOfRandomVolumes(rates, {1.0f, 1.0f, 1.0f}, true, 2000, 8);
}

TEST(ContinuosWetEtchingTest, RandomVolumesAwayFromTheOriginFollowTheRule)
{
    expectRuleOfRandomVolumes(rates, {1.0f, 1.0f, 1.0f}, false, 2100, 5);
}

TEST(ContinuosWetEtchingTest, RandomVolumesOfFlatCellsFollowTheRule)
{
    expectRuleOfRandomVolumes(rates, {1.0f, 1.0f, 0.35f}, true, 2200, 5);
    expectRuleOfRandomVolumes(rates, {1.0f, 1.0f, 0.35f}, false, 2250, 4);
}

TEST(ContinuosWetEtchingTest, RandomVolumesOfLargeCellsFollowTheRule)
{
    expectRuleOfRandomVolumes(rates, {2.0f, 2.0f, 2.0f}, true, 2300, 4);
    expectRuleOfRandomVolumes(rates, {1.5f, 1.5f, 1.5f}, true, 2350, 4);
    expectRuleOfRandomVolumes(rates, {1.5f, 2.0f, 1.5f}, false, 2380, 3);
}

TEST(ContinuosWetEtchingTest, WafersOfAnyExtentFollowTheRule)
{
    for (const Grid &grid :
         {Grid{8, 8, 4}, Grid{9, 5, 4}, Grid{4, 9, 3}, Grid{1, 6, 3}, Grid{6, 1, 3}}) {
        SCOPED_TRACE(testing::Message()
                     << grid.sizeX << " x " << grid.sizeY << " x " << grid.sizeZ);
        for (const double depth : {0.25, 0.75, 4.0})
            expectRule(caseOf(grid, waferOf(grid.sizeZ - 1), depth));
        expectRule(caseOf(grid, waferOf(grid.sizeZ), 1.0));
        expectRule(caseOf(
            grid, [](auto x, auto, auto) { return x == 0 ? 0U : silicon; }, 1.5));
        expectRule(caseOf(
            grid, [](auto, auto y, auto) { return y == 2 ? 0U : silicon; }, 1.5));
    }
}

TEST(ContinuosWetEtchingTest, LongRunsFollowTheRule)
{
    const Grid grid{5, 5, 4};
    std::mt19937 random(2400);
    Case given = caseOf(
        grid, [&](auto, auto, auto) { return random() % 4 == 0 ? 0U : silicon; }, 60.0);
    const std::vector<Wafer> wafers = played(given);
    expectWafers(given, wafers, 1, 0);
    expectWafers(given, wafers, 2, 91);
}

TEST(ContinuosWetEtchingTest, StepsAreFourTimesTheDepthRoundedWithHalvesUp)
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const std::pair<double, std::int64_t> cases[] = {
        {0.0, 0}, {0.1249, 0}, {0.125, 1},  {0.25, 1}, {0.3749, 1}, {0.375, 2},
        {0.5, 2}, {10.0, 40},  {40.0, 160}, {-0.1, 0}, {-10.0, 0},  {nan, 0}};
    for (const auto &given : cases)
        for (const int threads : {1, 3}) {
            SCOPED_TRACE(testing::Message() << given.first << " by " << threads << " threads");
            const Support::PoolThreads pool(threads);
            const auto volume = latticed({6, 4, 3}, waferOf(2));
            const Fakes::DebugLog log;
            etch(*volume, rates, given.first);
            EXPECT_EQ(log.lines().front(), "debug: Running etching");
            for (int t = 0; t < threads; ++t) {
                const std::string start =
                    "debug: Surface list size for thread " + std::to_string(t) + ": ";
                EXPECT_EQ(std::count_if(log.lines().begin(), log.lines().end(),
                                        [&start](const std::string &line) {
                                            return line.rfind(start, 0) == 0;
                                        }),
                          given.second + 1);
            }
        }
}

TEST(ContinuosWetEtchingTest, IdealFlatSurfaceIsUnexpectedAndStays)
{
    const auto volume = latticed({10, 10, 4}, waferOf(3));
    const Support::PoolThreads pool(1);
    const Fakes::DebugLog log;
    etch(*volume, rates, 10.0);
    unsigned top = 0;
    for (const SiLattice::Entry &entry : volume->siLattice()->cells())
        for (unsigned rank = 0; rank < 8; ++rank) {
            const SiAtom &atom = entry.second->atom(rank);
            const Vector3D &place = atom.position();
            if (place[0] < 3 || place[0] > 7 || place[1] < 3 || place[1] > 7)
                continue;
            EXPECT_EQ(atom.state(), 1U);
            EXPECT_EQ(atom.mass(), 1.0f);
            top += place[2] > 2.7 ? 1 : 0;
        }
    EXPECT_GT(top, 16U);
    // Two bulk neighbours, each with two bulk neighbours and one on the surface.
    EXPECT_GE(std::count(log.lines().begin(), log.lines().end(),
                         SiEtchingRule::unexpectedLine(0, 2, 2, 4)),
              std::int64_t(40) * top);
}

TEST(ContinuosWetEtchingTest, SecondRunGivesAllMassesBack)
{
    LoneAtom lone(bondsOf(configurations[5]));
    lone.etch(rates, 10.0);
    EXPECT_TRUE(isSameBits(lone.atom().mass(), massAfter(40, 0.00867)));
    lone.etch(rates, 0.0);
    EXPECT_EQ(lone.atom().mass(), 1.0f);
    lone.etch(rates, 0.25);
    EXPECT_TRUE(isSameBits(lone.atom().mass(), massAfter(1, 0.00867)));
}

TEST(ContinuosWetEtchingTest, MassIsSetForAtomsOfSiliconCellsAlone)
{
    const auto volume = latticed({5, 5, 3}, [](auto x, auto, auto z) {
        return z == 2 ? 0U : x < 2 ? resist : silicon;
    });
    for (const SiLattice::Entry &entry : volume->siLattice()->cells())
        for (unsigned rank = 0; rank < 8; ++rank)
            EXPECT_EQ(entry.second->atom(rank).mass(), 0.0f);
    const Ids materials = Support::materialsOf(*volume);
    etch(*volume, rates, 0.0);
    std::set<float> inSilicon;
    std::set<float> elsewhere;
    for (const SiLattice::Entry &entry : volume->siLattice()->cells())
        for (unsigned rank = 0; rank < 8; ++rank) {
            const SiAtom &atom = entry.second->atom(rank);
            const bool isIn =
                atom.cellIndex() >= 0 && materials[std::size_t(atom.cellIndex())] == silicon;
            (isIn ? inSilicon : elsewhere).insert(atom.mass());
        }
    EXPECT_EQ(inSilicon, std::set<float>{1.0f});
    EXPECT_EQ(elsewhere, std::set<float>{0.0f});
}

TEST(ContinuosWetEtchingTest, NegativeCountsAreLoggedAndTheRunGoesOn)
{
    // Void along a side, where atoms of configurations with rates face it.
    const Grid grid{6, 6, 5};
    std::mt19937 random(2500);
    const Ids ids = Support::materialsBy(
        grid, [&](auto, auto, auto) { return random() % 3 == 0 ? 0U : silicon; });
    for (const std::int32_t count : {0, -7}) {
        Case given{grid, Vector3D(0, 0, 0), ids, {}};
        Act counts;
        counts.kind = Act::SetAtoms;
        for (std::size_t i = 0; i < grid.cells(); ++i)
            counts.atoms[i] = {count, count};
        given.acts = {counts, etching(rates, 2.0)};
        const std::vector<Wafer> wafers = played(given);
        EXPECT_GT(std::count_if(wafers.back().lines().begin(), wafers.back().lines().end(),
                                [](const std::string &line) {
                                    return line.rfind("debug: Negative atom count", 0) == 0;
                                }),
                  0);
        expectRule(given);
    }
}

TEST(ContinuosWetEtchingTest, ResultDoesNotDependOnWhereAtomsLieInMemory)
{
    std::mt19937 random(2600);
    Case given{{8, 7, 6}, Vector3D(0, 0, 0), {}, {}};
    given.materials = Support::materialsBy(
        given.grid, [&random](auto, auto, auto) { return random() % 4 == 0 ? 0U : silicon; });
    given.acts = {etching(rates, 0.75), etching(rates, 5.0), etching(rates, 2.0)};
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

TEST(ContinuosWetEtchingTest, VolumeWithoutCrystalStaysAsItIs)
{
    const auto volume = Support::makeVolume({5, 6, 4}, waferOf(3));
    const Ids materials = Support::materialsOf(*volume);
    etch(*volume, rates, 4.0);
    EXPECT_FALSE(volume->siLattice());
    EXPECT_EQ(Support::materialsOf(*volume), materials);
    EXPECT_EQ(Support::nextMaterialsOf(*volume), materials);
}

TEST(ContinuosWetEtchingTest, VolumesWithoutSiliconOrWithASingleCellFollowTheRule)
{
    for (const double depth : {0.0, 0.25, 10.0, 40.0}) {
        for (const std::uint32_t material : {0U, resist})
            expectRule(caseOf(
                {5, 4, 3}, [=](auto, auto, auto) { return material; }, depth));
        expectRule(caseOf(
            {5, 5, 5}, [](auto x, auto y, auto z) { return x == 2 && y == 2 && z == 2 ? 1U : 0U; },
            depth));
        expectRule(caseOf({1, 1, 1}, waferOf(1), depth));
    }
}

TEST(ContinuosWetEtchingTest, RunWaitsForBothArrays)
{
    for (const bool next : {false, true}) {
        const auto volume = latticed({4, 4, 3}, waferOf(2));
        if (next)
            volume->nextVoxels();
        else
            volume->voxels();
        auto running = std::async(std::launch::async, [&] { etch(*volume, rates, 0.25); });
        EXPECT_EQ(running.wait_for(std::chrono::milliseconds(30)), std::future_status::timeout);
        if (next)
            volume->releaseNextVoxels();
        else
            volume->releaseVoxels();
        running.get();
        EXPECT_EQ(volume->siLattice()->cells().front().second->atom(3).mass(), 1.0f);
    }
}
