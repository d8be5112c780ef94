#include "Model/Automaton/SiLattice.h"

#include "Model/Automaton/TotalVolume.h"
#include "SiLatticeRule.h"
#include "Support/Volumes.h"

#include <boost/make_shared.hpp>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <map>
#include <numeric>
#include <random>
#include <set>
#include <tuple>
#include <vector>

using Model::Automaton::SiAtom;
using Model::Automaton::SiCell;
using Model::Automaton::SiLattice;
using Model::Automaton::TotalVolume;
using Model::Automaton::Voxel;
using SiLatticeRule::AtomName;
using Support::Grid;
using Util::Vector3D;

namespace {

using Ids = std::vector<std::uint32_t>;
using Counts = std::vector<std::int32_t>;

boost::shared_ptr<TotalVolume> volumeAt(const Grid &grid, const Vector3D &position, const Ids &ids)
{
    return boost::make_shared<TotalVolume>(grid.sizeX, grid.sizeY, grid.sizeZ, grid.cellSizeX,
                                           grid.cellSizeY, grid.cellSizeZ, position, ids);
}

/// A volume of one material with its crystal.
boost::shared_ptr<TotalVolume> latticed(const Grid &grid, std::uint32_t material = 1)
{
    auto volume = volumeAt(grid, Vector3D(0, 0, 0), Ids(grid.cells(), material));
    volume->rebuildSiLattice();
    return volume;
}

std::size_t cellsOf(const TotalVolume &volume)
{
    return std::size_t{volume.sizeX()} * volume.sizeY() * volume.sizeZ();
}

Counts atomsOf(TotalVolume &volume)
{
    const Voxel *cells = volume.voxels();
    Counts counts;
    for (std::size_t i = 0; i < cellsOf(volume); ++i)
        counts.push_back(cells[i].atoms());
    volume.releaseVoxels();
    return counts;
}

Counts nextAtomsOf(TotalVolume &volume)
{
    const Voxel *cells = volume.nextVoxels();
    Counts counts;
    for (std::size_t i = 0; i < cellsOf(volume); ++i)
        counts.push_back(cells[i].atoms());
    volume.releaseNextVoxels();
    return counts;
}

Counts times(Counts counts, std::int32_t factor)
{
    for (std::int32_t &count : counts)
        count *= factor;
    return counts;
}

std::map<const SiAtom *, AtomName> namesOf(const SiLattice &lattice)
{
    std::map<const SiAtom *, AtomName> names;
    for (const SiLattice::Entry &entry : lattice.cells())
        for (unsigned rank = 0; rank < 8; ++rank)
            names[&entry.second->atom(rank)] = {entry.first, rank};
    return names;
}

void expectNear(const Vector3D &actual, const SiLatticeRule::Point &expected)
{
    for (unsigned axis = 0; axis < 3; ++axis)
        EXPECT_NEAR(actual[axis], expected[axis], 1e-9) << "axis " << axis;
}

void expectAtom(const SiAtom &actual, const SiLatticeRule::Atom &expected,
                const std::map<const SiAtom *, AtomName> &names)
{
    expectNear(actual.position(), expected.position);
    EXPECT_EQ(actual.state(), expected.state);
    EXPECT_EQ(actual.cellIndex(), expected.cellIndex);
    std::map<unsigned, AtomName> links;
    for (unsigned d = 0; d < 4; ++d)
        if (actual.link(d) != nullptr) {
            const auto name = names.find(actual.link(d));
            ASSERT_NE(name, names.end()) << "leads out of the lattice at " << d;
            links[d] = name->second;
        }
    EXPECT_EQ(links, expected.links);
}

void expectLattice(const SiLattice &actual, const SiLatticeRule::Lattice &expected)
{
    EXPECT_EQ(actual.cellsX(), expected.cellsX);
    EXPECT_EQ(actual.cellsY(), expected.cellsY);
    EXPECT_EQ(actual.cellsZ(), expected.cellsZ);
    Ids keys;
    for (const SiLattice::Entry &entry : actual.cells())
        keys.push_back(entry.first);
    Ids expectedKeys;
    for (const auto &entry : expected.cells)
        expectedKeys.push_back(entry.first);
    ASSERT_EQ(keys, expectedKeys);
    const std::map<const SiAtom *, AtomName> names = namesOf(actual);
    for (const SiLattice::Entry &entry : actual.cells()) {
        const SiLatticeRule::Cell &cell = expected.cells.at(entry.first);
        expectNear(entry.second->position(), cell.position);
        EXPECT_EQ(actual.cell(entry.first), entry.second);
        for (unsigned rank = 0; rank < 8; ++rank) {
            SCOPED_TRACE(testing::Message() << "unit cell " << entry.first << ", rank " << rank);
            EXPECT_EQ(entry.second->atom(rank).owner(), entry.second.get());
            expectAtom(entry.second->atom(rank), cell.atoms[rank], names);
            if (testing::Test::HasFailure())
                return;
        }
    }
}

/// Builds twice and compares with the rule each time.
void expectRule(const Grid &grid, const Vector3D &position, const Ids &ids)
{
    const auto volume = volumeAt(grid, position, ids);
    const SiLatticeRule::Lattice expected = SiLatticeRule::latticeOver(grid, position, ids);
    for (std::int32_t build = 1; build <= 2; ++build) {
        SCOPED_TRACE(testing::Message() << "build " << build);
        volume->rebuildSiLattice();
        ASSERT_TRUE(volume->siLattice());
        expectLattice(*volume->siLattice(), expected);
        EXPECT_EQ(atomsOf(*volume), times(expected.atoms, build));
        EXPECT_EQ(nextAtomsOf(*volume), times(expected.atoms, build));
        EXPECT_EQ(Support::materialsOf(*volume), ids);
        EXPECT_EQ(Support::nextMaterialsOf(*volume), ids);
    }
}

Ids randomIds(std::size_t count, std::mt19937 &random)
{
    const std::uint32_t materials[] = {1, 1, 1, 0, 0, 2, 3, 4000000000U};
    const unsigned siliconIn = 1 + random() % 8;
    Ids ids;
    for (std::size_t i = 0; i < count; ++i)
        ids.push_back(random() % 8 < siliconIn ? 1 : materials[random() % 8]);
    return ids;
}

void expectRuleOfRandomVolumes(float cellSizeX, float cellSizeY, float cellSizeZ,
                               unsigned firstSeed)
{
    for (unsigned seed = firstSeed; seed < firstSeed + 12; ++seed) {
        SCOPED_TRACE(testing::Message() << "seed " << seed);
        std::mt19937 random(seed);
        Grid grid;
        grid.sizeX = 1 + random() % 7;
        grid.sizeY = 1 + random() % 5;
        grid.sizeZ = 1 + random() % 6;
        grid.cellSizeX = cellSizeX;
        grid.cellSizeY = cellSizeY;
        grid.cellSizeZ = cellSizeZ;
        const auto coordinate = [&random] { return (double(random() % 4001) - 2000.0) / 32.0; };
        const double x = coordinate();
        const double y = coordinate();
        const double z = coordinate();
        expectRule(grid, Vector3D(x, y, z), randomIds(grid.cells(), random));
        if (testing::Test::HasFailure())
            return;
    }
}

/// States of the atoms in the crystal, by whether a grid cell holds them.
std::set<std::uint32_t> statesOf(const SiLattice &lattice, bool isInside)
{
    std::set<std::uint32_t> states;
    for (const SiLattice::Entry &entry : lattice.cells())
        for (unsigned rank = 0; rank < 8; ++rank)
            if ((entry.second->atom(rank).cellIndex() >= 0) == isInside)
                states.insert(entry.second->atom(rank).state());
    return states;
}

std::uint32_t keyOf(const SiLattice &lattice, std::uint32_t i, std::uint32_t j, std::uint32_t k)
{
    return (lattice.cellsY() * i + j) * lattice.cellsZ() + k;
}

} // namespace

TEST(SiLatticeTest, VolumeHasNoneUntilItIsBuilt)
{
    const auto volume = volumeAt({}, Vector3D(0, 0, 0), {1});
    EXPECT_FALSE(volume->siLattice());
    volume->rebuildSiLattice();
    EXPECT_TRUE(volume->siLattice());
}

TEST(SiLatticeTest, ExtentIsTheTurnedSquareAndTheLayers)
{
    const auto check = [](const Grid &grid, std::uint32_t width) {
        const auto volume = volumeAt(grid, Vector3D(0, 0, 0), Ids(grid.cells(), 0));
        const SiLattice lattice(volume.get());
        EXPECT_EQ(lattice.cellsX(), width);
        EXPECT_EQ(lattice.cellsY(), width);
        EXPECT_EQ(lattice.cellsZ(), grid.sizeZ);
        EXPECT_TRUE(lattice.cells().empty());
    };
    // 2, 12, 13 and 7 by the square root of 2.
    check({1, 1, 1}, 2);
    check({7, 5, 6}, 9);
    check({3, 10, 2}, 10);
    check({3, 4, 9, 2.0f, 2.0f, 0.35f}, 5);
}

TEST(SiLatticeTest, CornersAreATurnedUnitSquareRaisedByOne)
{
    const auto volume = latticed({2, 3, 1});
    const double s = std::sqrt(2.0) / 2;
    const std::array<SiLatticeRule::Point, 8> expected = {{{0, 0, 0},
                                                           {0, 0, 1},
                                                           {-s, s, 0},
                                                           {-s, s, 1},
                                                           {s, s, 0},
                                                           {s, s, 1},
                                                           {0, std::sqrt(2.0), 0},
                                                           {0, std::sqrt(2.0), 1}}};
    for (unsigned i = 0; i < 8; ++i) {
        SCOPED_TRACE(testing::Message() << "corner " << i);
        expectNear(volume->siLattice()->corners()[i], expected[i]);
    }
    const SiLattice fresh(volume.get());
    expectNear(fresh.corners()[6], expected[6]);
}

TEST(SiLatticeTest, RandomVolumesOfUnitCellsFollowTheRule)
{
    expectRuleOfRandomVolumes(1.0f, 1.0f, 1.0f, 100);
}

TEST(SiLatticeTest, RandomVolumesOfFlatCellsFollowTheRule)
{
    expectRuleOfRandomVolumes(1.0f, 1.0f, 0.35f, 200);
}

TEST(SiLatticeTest, RandomVolumesOfLargeCellsFollowTheRule)
{
    expectRuleOfRandomVolumes(2.0f, 2.0f, 2.0f, 300);
}

TEST(SiLatticeTest, RandomVolumesOfUnevenCellsFollowTheRule)
{
    expectRuleOfRandomVolumes(0.5f, 1.5f, 0.75f, 400);
}

TEST(SiLatticeTest, FullVolumesFollowTheRule)
{
    for (const Grid &grid : {Grid{1, 1, 1}, Grid{7, 5, 6}, Grid{2, 7, 3}, Grid{7, 1, 1},
                             Grid{1, 6, 4}, Grid{4, 4, 6, 1.0f, 1.0f, 0.35f}}) {
        SCOPED_TRACE(testing::Message()
                     << grid.sizeX << " x " << grid.sizeY << " x " << grid.sizeZ);
        expectRule(grid, Vector3D(0, 0, 0), Ids(grid.cells(), 1));
        expectRule(grid, Vector3D(-13.25, 40.5, 7.125), Ids(grid.cells(), 1));
    }
}

TEST(SiLatticeTest, BondsLeadToTheKeptAtomsInTheirDirections)
{
    const Grid grid{6, 5, 4};
    const unsigned seed = 11;
    SCOPED_TRACE(testing::Message() << "seed " << seed);
    std::mt19937 random(seed);
    const auto volume = volumeAt(grid, Vector3D(3, -8, 1), randomIds(grid.cells(), random));
    volume->rebuildSiLattice();
    const boost::shared_ptr<SiLattice> lattice = volume->siLattice();
    // In quarters of a unit cell.
    std::map<std::tuple<int, int, int>, const SiAtom *> places;
    const auto placeOf = [&lattice](std::uint32_t key, unsigned rank) {
        const std::uint32_t layers = lattice->cellsZ();
        const std::array<std::uint32_t, 3> cell = {key / layers / lattice->cellsY(),
                                                   key / layers % lattice->cellsY(), key % layers};
        std::array<int, 3> place{};
        for (unsigned axis = 0; axis < 3; ++axis)
            place[axis] = static_cast<int>(4 * cell[axis] + 4 * SiLatticeRule::basis[rank][axis]);
        return place;
    };
    for (const SiLattice::Entry &entry : lattice->cells())
        for (unsigned rank = 0; rank < 8; ++rank) {
            const std::array<int, 3> p = placeOf(entry.first, rank);
            places[std::make_tuple(p[0], p[1], p[2])] = &entry.second->atom(rank);
        }
    ASSERT_FALSE(places.empty());
    for (const SiLattice::Entry &entry : lattice->cells())
        for (unsigned rank = 0; rank < 8; ++rank)
            for (unsigned d = 0; d < 4; ++d) {
                const std::array<int, 3> p = placeOf(entry.first, rank);
                const std::array<int, 3> to = SiLatticeRule::bondDirection(rank, d);
                const auto found =
                    places.find(std::make_tuple(p[0] + to[0], p[1] + to[1], p[2] + to[2]));
                const SiAtom *expected = found == places.end() ? nullptr : found->second;
                ASSERT_EQ(entry.second->atom(rank).link(d), expected)
                    << "unit cell " << entry.first << ", rank " << rank << ", at " << d;
            }
}

TEST(SiLatticeTest, InteriorAtomsAreFourFoldBonded)
{
    const auto volume = latticed({7, 7, 5});
    const double bond = std::sqrt(3.0) / 4;
    unsigned interior = 0;
    for (const SiLattice::Entry &entry : volume->siLattice()->cells())
        for (unsigned rank = 0; rank < 8; ++rank) {
            const SiAtom &atom = entry.second->atom(rank);
            bool isInterior = true;
            for (unsigned axis = 0; axis < 3; ++axis) {
                const double size = axis == 2 ? 5 : 7;
                if (atom.position()[axis] < 0.5 || atom.position()[axis] > size - 0.5)
                    isInterior = false;
            }
            if (!isInterior)
                continue;
            ++interior;
            EXPECT_EQ(atom.bondCount(), 4U);
            EXPECT_FALSE(atom.isSurface());
            for (unsigned d = 0; d < 4; ++d) {
                ASSERT_NE(atom.link(d), nullptr);
                double square = 0;
                for (unsigned axis = 0; axis < 3; ++axis)
                    square += std::pow(atom.link(d)->position()[axis] - atom.position()[axis], 2);
                EXPECT_NEAR(std::sqrt(square), bond, 1e-6);
            }
        }
    // Eight a unit of the volume of 6 x 6 x 4, but for the rim.
    EXPECT_GT(interior, 6U * 6 * 4 * 7);
}

TEST(SiLatticeTest, BothEndsOfABondAreAtPositionsThatAddToThree)
{
    const auto volume = latticed({5, 4, 3});
    unsigned bonds = 0;
    for (const SiLattice::Entry &entry : volume->siLattice()->cells())
        for (unsigned rank = 0; rank < 8; ++rank)
            for (unsigned d = 0; d < 4; ++d) {
                const SiAtom &atom = entry.second->atom(rank);
                if (atom.link(d) == nullptr)
                    continue;
                ++bonds;
                EXPECT_EQ(atom.link(d)->link(3 - d), &atom);
            }
    EXPECT_GT(bonds, 5U * 4 * 3 * 8);
}

TEST(SiLatticeTest, AtomsOutsideAFullVolumeAreMasks)
{
    const auto volume = latticed({4, 4, 3});
    const SiLattice &lattice = *volume->siLattice();
    EXPECT_EQ(statesOf(lattice, true), (std::set<std::uint32_t>{1}));
    EXPECT_EQ(statesOf(lattice, false), (std::set<std::uint32_t>{3}));
    // On each of the four sides.
    bool isBelow[2] = {false, false};
    bool isAbove[2] = {false, false};
    for (const SiLattice::Entry &entry : lattice.cells())
        for (unsigned rank = 0; rank < 8; ++rank)
            for (unsigned axis = 0; axis < 2; ++axis) {
                const SiAtom &atom = entry.second->atom(rank);
                const double place = atom.position()[axis];
                if (place > 0 && place < 4)
                    continue;
                EXPECT_EQ(atom.state(), 3U);
                EXPECT_EQ(atom.cellIndex(), -1);
                (place < 0 ? isBelow : isAbove)[axis] = true;
            }
    for (unsigned axis = 0; axis < 2; ++axis) {
        EXPECT_TRUE(isBelow[axis]);
        EXPECT_TRUE(isAbove[axis]);
    }
}

TEST(SiLatticeTest, AtomsInAnotherFilmAreMasksAndThoseInNothingAreRemoved)
{
    const Grid grid{4, 4, 1};
    const Ids ids = Support::materialsBy(grid, [](std::uint32_t x, std::uint32_t, std::uint32_t) {
        return std::array<std::uint32_t, 4>{0, 1, 7, 1}[x];
    });
    const auto volume = volumeAt(grid, Vector3D(0, 0, 0), ids);
    volume->rebuildSiLattice();
    std::set<std::pair<std::uint32_t, std::uint32_t>> statesByMaterial;
    bool isSideBySide = false;
    for (const SiLattice::Entry &entry : volume->siLattice()->cells()) {
        std::set<std::uint32_t> inFilms;
        for (unsigned rank = 0; rank < 8; ++rank) {
            const SiAtom &atom = entry.second->atom(rank);
            if (atom.cellIndex() < 0)
                continue;
            const std::uint32_t material = ids[std::size_t(atom.cellIndex())];
            statesByMaterial.insert({material, atom.state()});
            if (material != 0)
                inFilms.insert(atom.state());
        }
        if (inFilms == std::set<std::uint32_t>{1, 3})
            isSideBySide = true;
    }
    EXPECT_EQ(statesByMaterial,
              (std::set<std::pair<std::uint32_t, std::uint32_t>>{{0, 0}, {1, 1}, {7, 3}}));
    EXPECT_TRUE(isSideBySide);
}

TEST(SiLatticeTest, AtomOnTheLowSideIsInside)
{
    // Ranks 0 and 1 of the lowest unit cells lie on the bottom.
    const auto volume = volumeAt({4, 4, 1}, Vector3D(0.1, 0.2, 10.7), Ids(16, 1));
    volume->rebuildSiLattice();
    const boost::shared_ptr<SiCell> cell =
        volume->siLattice()->cell(keyOf(*volume->siLattice(), 2, 2, 0));
    ASSERT_TRUE(cell);
    for (unsigned rank = 0; rank < 2; ++rank) {
        EXPECT_EQ(cell->atom(rank).position()[2], 10.7);
        EXPECT_EQ(cell->atom(rank).state(), 1U);
        EXPECT_GE(cell->atom(rank).cellIndex(), 0);
    }
}

TEST(SiLatticeTest, AtomOnTheTopIsOutside)
{
    // The top at 1.5 cuts the second layer of unit cells where ranks 4 and 5 are.
    const auto volume = latticed({4, 4, 3, 1.0f, 1.0f, 0.5f});
    const boost::shared_ptr<SiCell> cell =
        volume->siLattice()->cell(keyOf(*volume->siLattice(), 2, 2, 1));
    ASSERT_TRUE(cell);
    for (unsigned rank = 0; rank < 8; ++rank) {
        SCOPED_TRACE(testing::Message() << "rank " << rank);
        EXPECT_EQ(cell->atom(rank).state(), rank < 4 ? 1U : 3U);
        EXPECT_EQ(cell->atom(rank).cellIndex() >= 0, rank < 4);
    }
    EXPECT_EQ(cell->atom(4).position()[2], 1.5);
}

TEST(SiLatticeTest, AtomOnTheHighSideAlongXIsOutside)
{
    // Half as wide as the lattice expects, the volume ends where i = j.
    const auto volume = latticed({4, 4, 1, 0.5f, 1.0f, 1.0f});
    const boost::shared_ptr<SiCell> cell =
        volume->siLattice()->cell(keyOf(*volume->siLattice(), 2, 2, 0));
    ASSERT_TRUE(cell);
    EXPECT_NEAR(cell->atom(0).position()[0], 2.0, 1e-6);
    for (const unsigned rank : {0U, 1U, 2U, 3U, 4U, 6U}) {
        EXPECT_EQ(cell->atom(rank).state(), 3U) << "rank " << rank;
        EXPECT_EQ(cell->atom(rank).cellIndex(), -1) << "rank " << rank;
    }
    for (const unsigned rank : {5U, 7U})
        EXPECT_EQ(cell->atom(rank).state(), 1U) << "rank " << rank;
}

TEST(SiLatticeTest, AtomsBelowZeroAreNotTruncatedIntoTheVolume)
{
    const auto volume = latticed({1, 1, 1});
    const boost::shared_ptr<SiCell> cell = volume->siLattice()->cell(0);
    ASSERT_TRUE(cell);
    // At y = -0.5 and at y = 0.5 / sqrt(2) - 0.5.
    for (const unsigned rank : {0U, 2U, 4U, 5U}) {
        EXPECT_LT(cell->atom(rank).position()[1], 0.0) << "rank " << rank;
        EXPECT_EQ(cell->atom(rank).state(), 3U) << "rank " << rank;
    }
}

TEST(SiLatticeTest, UnitCellWithKeyZeroIsKeptAndBonded)
{
    const auto volume = latticed({1, 1, 1});
    const SiLattice &lattice = *volume->siLattice();
    ASSERT_FALSE(lattice.cells().empty());
    EXPECT_EQ(lattice.cells().front().first, 0U);
    const boost::shared_ptr<SiCell> cell = lattice.cell(0);
    const boost::shared_ptr<SiCell> beside = lattice.cell(keyOf(lattice, 0, 1, 0));
    ASSERT_TRUE(cell);
    ASSERT_TRUE(beside);
    EXPECT_EQ(cell->atom(3).state(), 1U);
    EXPECT_EQ(cell->atom(3).link(3), &beside->atom(4));
    EXPECT_EQ(cell->atom(7).link(1), &beside->atom(4));
    EXPECT_EQ(beside->atom(4).link(0), &cell->atom(3));
    EXPECT_EQ(beside->atom(4).link(2), &cell->atom(7));
    // Nothing lies below it.
    EXPECT_EQ(cell->atom(0).link(1), nullptr);
    EXPECT_EQ(cell->atom(0).link(2), nullptr);
    EXPECT_EQ(cell->atom(0).link(0), nullptr);
    EXPECT_EQ(cell->atom(0).link(3), &cell->atom(2));
}

TEST(SiLatticeTest, OriginIsOffsetByTheSizeAlongXOnBothAxes)
{
    const auto volume = volumeAt({3, 6, 2}, Vector3D(10, 20, 30), Ids(36, 1));
    volume->rebuildSiLattice();
    const SiLattice &lattice = *volume->siLattice();
    ASSERT_FALSE(lattice.cells().empty());
    for (const SiLattice::Entry &entry : lattice.cells()) {
        const double i = entry.first / 2 / lattice.cellsY();
        const double j = entry.first / 2 % lattice.cellsY();
        const double k = entry.first % 2;
        EXPECT_NEAR(entry.second->position()[0], 11.5 + (i - j) / std::sqrt(2.0), 1e-6);
        EXPECT_NEAR(entry.second->position()[1], 18.5 + (i + j) / std::sqrt(2.0), 1e-6);
        EXPECT_NEAR(entry.second->position()[2], 30 + k, 1e-9);
    }
}

TEST(SiLatticeTest, UnitCellsWithoutSiliconAreNotKept)
{
    const Grid grid{4, 4, 4};
    const auto volume =
        volumeAt(grid, Vector3D(0, 0, 0),
                 Support::materialsBy(grid, [](std::uint32_t, std::uint32_t, std::uint32_t z) {
                     return z == 0 ? 1U : z == 1 ? 5U : 0U;
                 }));
    volume->rebuildSiLattice();
    const SiLattice &lattice = *volume->siLattice();
    ASSERT_FALSE(lattice.cells().empty());
    for (const SiLattice::Entry &entry : lattice.cells())
        EXPECT_EQ(entry.first % 4, 0U);
    EXPECT_TRUE(lattice.cell(keyOf(lattice, 2, 2, 0)));
    EXPECT_FALSE(lattice.cell(keyOf(lattice, 2, 2, 1)));
    EXPECT_FALSE(lattice.cell(lattice.cellsX() * lattice.cellsY() * lattice.cellsZ()));
    EXPECT_FALSE(lattice.cell(~std::uint32_t{0}));
}

TEST(SiLatticeTest, FlatCellsLeaveTheUpperUnitCellsOut)
{
    // 2.1 high.
    const auto volume = latticed({4, 4, 6, 1.0f, 1.0f, 0.35f});
    std::set<std::uint32_t> layers;
    for (const SiLattice::Entry &entry : volume->siLattice()->cells())
        layers.insert(entry.first % 6);
    EXPECT_EQ(layers, (std::set<std::uint32_t>{0, 1, 2}));
}

TEST(SiLatticeTest, LargeCellsAreNotCoveredToTheTop)
{
    const Grid grid{4, 4, 4, 2.0f, 2.0f, 2.0f};
    const auto volume = latticed(grid);
    const Counts counts = atomsOf(*volume);
    std::array<std::int32_t, 4> layers{};
    for (std::uint32_t x = 0; x < 4; ++x)
        for (std::uint32_t y = 0; y < 4; ++y)
            for (std::uint32_t z = 0; z < 4; ++z)
                layers[z] += counts[grid.index(x, y, z)];
    EXPECT_GT(layers[0], 0);
    EXPECT_EQ(layers[1], layers[0]);
    EXPECT_EQ(layers[2], 0);
    EXPECT_EQ(layers[3], 0);
}

TEST(SiLatticeTest, VolumeWithoutSiliconHasNoUnitCells)
{
    for (const std::uint32_t material : {0U, 2U}) {
        const auto volume = latticed({3, 3, 3}, material);
        ASSERT_TRUE(volume->siLattice());
        EXPECT_TRUE(volume->siLattice()->cells().empty());
        EXPECT_TRUE(volume->siLattice()->maskAtoms().empty());
        EXPECT_FALSE(volume->siLattice()->cell(0));
        EXPECT_EQ(atomsOf(*volume), Counts(27, 0));
        EXPECT_EQ(nextAtomsOf(*volume), Counts(27, 0));
    }
}

TEST(SiLatticeTest, VolumeWithASizeOfZeroHasNoUnitCells)
{
    for (const Grid &grid : {Grid{0, 0, 0}, Grid{0, 3, 3}, Grid{3, 0, 3}, Grid{3, 3, 0}}) {
        const auto volume = latticed(grid);
        ASSERT_TRUE(volume->siLattice());
        EXPECT_TRUE(volume->siLattice()->cells().empty());
        EXPECT_FALSE(volume->siLattice()->cell(0));
        EXPECT_EQ(volume->siLattice()->cellsX(), grid.sizeX + grid.sizeY == 0   ? 0U
                                                 : grid.sizeX + grid.sizeY == 3 ? 3U
                                                                                : 5U);
        EXPECT_EQ(volume->siLattice()->cellsZ(), grid.sizeZ);
    }
}

TEST(SiLatticeTest, CountsGoOnTopOfThoseInTheCurrentArray)
{
    const Grid grid{3, 3, 2};
    const Ids ids = Support::materialsBy(
        grid, [](std::uint32_t x, std::uint32_t, std::uint32_t) { return x == 0 ? 2U : 1U; });
    const auto volume = volumeAt(grid, Vector3D(0, 0, 0), ids);
    const Counts added = SiLatticeRule::latticeOver(grid, Vector3D(0, 0, 0), ids).atoms;
    Voxel *cells = volume->voxels();
    Voxel *nextCells = volume->nextVoxels();
    for (std::size_t i = 0; i < grid.cells(); ++i) {
        cells[i].setAtoms(5);
        nextCells[i].setAtoms(900);
    }
    volume->releaseNextVoxels();
    volume->releaseVoxels();
    volume->rebuildSiLattice();
    const Counts counts = atomsOf(*volume);
    const Counts nextCounts = nextAtomsOf(*volume);
    for (std::size_t i = 0; i < grid.cells(); ++i) {
        EXPECT_EQ(counts[i], 5 + added[i]);
        // Where no atom fell into silicon, nothing is written.
        EXPECT_EQ(nextCounts[i], added[i] == 0 ? 900 : 5 + added[i]);
    }
    EXPECT_GT(std::accumulate(added.begin(), added.end(), 0), 0);
}

TEST(SiLatticeTest, SecondBuildAddsItsCountsToTheFirst)
{
    const auto volume = latticed({3, 4, 2});
    const Counts once = atomsOf(*volume);
    ASSERT_GT(*std::max_element(once.begin(), once.end()), 0);
    volume->rebuildSiLattice();
    EXPECT_EQ(atomsOf(*volume), times(once, 2));
    EXPECT_EQ(nextAtomsOf(*volume), times(once, 2));
}

TEST(SiLatticeTest, RebuildReplacesTheLatticeWhole)
{
    const auto volume = latticed({2, 2, 2});
    const boost::shared_ptr<SiLattice> first = volume->siLattice();
    first->maskAtoms().push_back(boost::make_shared<SiAtom>(Vector3D(), nullptr, true));
    volume->rebuildSiLattice();
    EXPECT_NE(volume->siLattice(), first);
    EXPECT_TRUE(volume->siLattice()->maskAtoms().empty());
    // The old one stays whole for who holds it.
    EXPECT_EQ(first->maskAtoms().size(), 1U);
    EXPECT_EQ(first->cells().size(), volume->siLattice()->cells().size());
}

TEST(SiLatticeTest, LatticeStaysBehindUntilItIsRebuilt)
{
    const auto volume = latticed({2, 2, 2});
    const std::size_t before = volume->siLattice()->cells().size();
    ASSERT_GT(before, 0U);
    Voxel *cells = volume->voxels();
    for (std::size_t i = 0; i < 8; ++i)
        cells[i].setMaterial(0);
    volume->releaseVoxels();
    EXPECT_EQ(volume->siLattice()->cells().size(), before);
    EXPECT_EQ(statesOf(*volume->siLattice(), true), (std::set<std::uint32_t>{1}));
    volume->rebuildSiLattice();
    EXPECT_TRUE(volume->siLattice()->cells().empty());
}
