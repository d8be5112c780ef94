#include "Core/Operations/ExtractFilm/FilmExtraction.h"

#include "FilmExtractionRule.h"
#include "PassRuns.h"
#include "ProcessSuite.h"
#include "SourceVolume.h"

#include "Core/Operations/ExtractFilm/ExtractFilm.h"
#include "Model/Automaton/TotalVolume.h"
#include "Support/Volumes.h"

#include <boost/pointer_cast.hpp>
#include <boost/shared_ptr.hpp>

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <future>
#include <random>
#include <vector>

using Core::Operations::ExtractFilm;
using Core::Operations::FilmExtraction;
using FilmExtractionRule::Materials;
using Model::Automaton::TotalVolume;
using Support::Grid;
using Util::Vector3D;

namespace {

constexpr std::uint32_t film = 7;
constexpr std::uint32_t wafer = 1;

/// The working array is full of the film.
SourceVolume sourceOf(const Grid &grid, const Materials &materials, const Vector3D &position = {})
{
    return SourceVolume(grid, materials, film, position);
}

Materials extract(const Grid &grid, const Materials &materials, std::uint32_t id, bool invert,
                  int threads = 1)
{
    SourceVolume source = sourceOf(grid, materials);
    const Support::PoolThreads pool(threads);
    FilmExtraction extraction(source.volume().get(), id, invert);
    EXPECT_TRUE(extraction.fits());
    EXPECT_FALSE(extraction.found());
    const Materials ids = extraction.extract();
    EXPECT_EQ(extraction.found(),
              id != 0 && std::find(materials.begin(), materials.end(), id) != materials.end());
    source.expectUnchanged();
    return ids;
}

void expectRule(const Grid &grid, const Materials &materials, std::uint32_t id = film)
{
    for (const bool invert : {false, true}) {
        const Materials expected = FilmExtractionRule::extracted(grid, materials, id, invert);
        // Not EXPECT_EQ: it would print all cells.
        EXPECT_TRUE(extract(grid, materials, id, invert) == expected)
            << grid.sizeX << " x " << grid.sizeY << " x " << grid.sizeZ << ", material " << id
            << (invert ? ", inverted" : "");
    }
}

void expectFilm(const Grid &grid, const Support::MaterialRule &source, bool invert,
                const Support::MaterialRule &expected)
{
    const Materials materials = Support::materialsBy(grid, source);
    for (const int threads : {1, 2, 3, 5})
        EXPECT_EQ(extract(grid, materials, film, invert, threads),
                  Support::materialsBy(grid, expected))
            << (invert ? "inverted, " : "") << threads << " threads";
    expectRule(grid, materials);
}

class FilmExtractionTest : public Fakes::ProcessSuite<ExtractFilm>
{
protected:
    /// Plays the whole operation and returns the volume that stands behind its source then.
    Volume played(const SourceVolume &source, std::uint32_t id, bool invert)
    {
        workspace().document().reset();
        workspace().document().addObject(source.volume());
        activateOn(source.volume(), [&](ExtractFilm &operation) {
            operation.setFilm(id);
            operation.setInvert(invert);
            operation.end();
        });
        const auto objects = workspace().document().objects();
        EXPECT_EQ(objects.size(), 2U);
        EXPECT_EQ(objects.front(), source.volume());
        return boost::dynamic_pointer_cast<TotalVolume>(objects.back());
    }
};

TEST_F(FilmExtractionTest, FilmOverTheWholeSubstrateComesOutWholeAndLandsOnLayerZero)
{
    const Grid grid{6, 5, 9};
    const auto floor = [](std::uint32_t x, std::uint32_t y) { return 2 + (x + y) % 2; };
    expectFilm(
        grid,
        [&](std::uint32_t x, std::uint32_t y, std::uint32_t z) {
            if (z < floor(x, y))
                return wafer;
            return z < floor(x, y) + 2 ? film : 0U;
        },
        false,
        [&](std::uint32_t x, std::uint32_t y, std::uint32_t z) {
            return z + 2 >= floor(x, y) && z + 2 < floor(x, y) + 2 ? film : 0U;
        });
}

TEST_F(FilmExtractionTest, FilmCutInTwoYieldsOnlyThePartWithTheLowestX)
{
    const Grid grid{9, 4, 6};
    for (std::uint32_t gap = 1; gap < 8; ++gap)
        expectFilm(
            grid,
            [=](std::uint32_t x, auto, std::uint32_t z) {
                if (z < 3)
                    return wafer;
                return z == 3 && x != gap ? film : 0U;
            },
            false,
            [=](std::uint32_t x, auto, std::uint32_t z) { return z == 0 && x < gap ? film : 0U; });
}

TEST_F(FilmExtractionTest, PartWithTheLowestYComesOutIfBothHaveTheSameX)
{
    expectFilm(
        {4, 9, 5},
        [](auto, std::uint32_t y, std::uint32_t z) { return z == 2 && y != 4 ? film : 0U; }, false,
        [](auto, std::uint32_t y, std::uint32_t z) { return z == 0 && y < 4 ? film : 0U; });
}

TEST_F(FilmExtractionTest, PartWithTheLowestZComesOutIfBothBeginInTheSameColumn)
{
    for (const bool invert : {false, true})
        expectFilm(
            {4, 3, 9},
            [](std::uint32_t x, auto, std::uint32_t z) {
                return z == 2 || (z >= 5 && x < 3) ? film : 0U;
            },
            invert, [](auto, auto, std::uint32_t z) { return z == 0 ? film : 0U; });
}

TEST_F(FilmExtractionTest, FirstCellCountsInTheSourceAndNotInTheInvertedCopy)
{
    // Turned over, the part at the high y would be first.
    expectFilm(
        {2, 7, 3},
        [](std::uint32_t x, std::uint32_t y, auto) {
            return (x == 0 && y == 0) || y >= 5 ? film : 0U;
        },
        true, [](std::uint32_t x, std::uint32_t y, auto) { return x == 0 && y == 6 ? film : 0U; });
}

TEST_F(FilmExtractionTest, TopSideOfAnInvertedFilmFacesDownAndTheBodyRestsOnLayerZero)
{
    // A plate with a bump on its top side and one side longer than the other.
    const auto body = [](std::uint32_t x, std::uint32_t y, std::uint32_t z) {
        return (z == 3 && y < 3) || (z == 4 && x == 1 && y == 0);
    };
    const Grid grid{5, 4, 9};
    expectFilm(
        grid,
        [&](std::uint32_t x, std::uint32_t y, std::uint32_t z) {
            return body(x, y, z) ? film : z < 3 ? wafer : 0U;
        },
        true,
        [](std::uint32_t x, std::uint32_t y, std::uint32_t z) {
            return (z == 1 && y >= 1) || (z == 0 && x == 1 && y == 3) ? film : 0U;
        });
}

TEST_F(FilmExtractionTest, CellsThatTouchAlongAnEdgeAreNotConnected)
{
    const Grid grid{5, 5, 5};
    const int offsets[][3] = {{1, 1, 0}, {1, -1, 0}, {1, 0, 1}, {1, 0, -1}, {0, 1, 1}, {0, 1, -1}};
    for (const auto &offset : offsets)
        for (const bool invert : {false, true})
            expectFilm(
                grid,
                [&](std::uint32_t x, std::uint32_t y, std::uint32_t z) {
                    const bool first = x == 2 && y == 2 && z == 2;
                    const bool second = int(x) == 2 + offset[0] && int(y) == 2 + offset[1] &&
                                        int(z) == 2 + offset[2];
                    return first || second ? film : wafer;
                },
                invert,
                [](std::uint32_t x, std::uint32_t y, std::uint32_t z) {
                    return x == 2 && y == 2 && z == 0 ? film : 0U;
                });
}

TEST_F(FilmExtractionTest, CellsThatTouchAtACornerAreNotConnected)
{
    for (const int dy : {-1, 1})
        for (const int dz : {-1, 1})
            expectFilm(
                {5, 5, 5},
                [&](std::uint32_t x, std::uint32_t y, std::uint32_t z) {
                    const bool first = x == 2 && y == 2 && z == 2;
                    const bool second = x == 3 && int(y) == 2 + dy && int(z) == 2 + dz;
                    return first || second ? film : wafer;
                },
                false,
                [](std::uint32_t x, std::uint32_t y, std::uint32_t z) {
                    return x == 2 && y == 2 && z == 0 ? film : 0U;
                });
}

TEST_F(FilmExtractionTest, RowsThatEndWhereTheNextBeginsAreNotConnected)
{
    // Neighbours in the array, but on opposite sides of the volume.
    expectFilm(
        {3, 4, 5},
        [](std::uint32_t x, std::uint32_t y, std::uint32_t z) {
            return (x == 1 && y == 1 && z == 4) || (x == 1 && y == 2 && z == 0) ? film : wafer;
        },
        false,
        [](std::uint32_t x, std::uint32_t y, std::uint32_t z) {
            return x == 1 && y == 1 && z == 0 ? film : 0U;
        });
    expectFilm(
        {3, 4, 5},
        [](std::uint32_t x, std::uint32_t y, std::uint32_t z) {
            return (x == 0 && y == 3 && z == 2) || (x == 1 && y == 0 && z == 2) ? film : wafer;
        },
        false,
        [](std::uint32_t x, std::uint32_t y, std::uint32_t z) {
            return x == 0 && y == 3 && z == 0 ? film : 0U;
        });
}

TEST_F(FilmExtractionTest, BodyThatFillsTheVolumeStaysAsItIs)
{
    for (const Grid &grid : PassRuns::grids())
        for (const bool invert : {false, true})
            expectFilm(
                grid, [](auto, auto, auto) { return film; }, invert,
                [](auto, auto, auto) { return film; });
}

TEST_F(FilmExtractionTest, HollowsOfTheBodyStayAndGoDownWithIt)
{
    for (const bool invert : {false, true})
        expectFilm(
            {5, 5, 8},
            [](std::uint32_t x, std::uint32_t y, std::uint32_t z) {
                if (z < 2 || z > 6)
                    return wafer;
                return x == 2 && y == 2 && z == 4 ? 3U : film;
            },
            invert,
            [](std::uint32_t x, std::uint32_t y, std::uint32_t z) {
                return z > 4 || (x == 2 && y == 2 && z == 2) ? 0U : film;
            });
}

TEST_F(FilmExtractionTest, SingleCellLandsInItsColumnOrAcrossItIfInverted)
{
    const Grid grid{3, 4, 5};
    for (std::uint32_t x = 0; x < 3; ++x)
        for (std::uint32_t y = 0; y < 4; ++y)
            for (std::uint32_t z = 0; z < 5; ++z)
                for (const bool invert : {false, true}) {
                    Materials source(grid.cells(), wafer);
                    source[grid.index(x, y, z)] = film;
                    Materials expected(grid.cells(), 0);
                    expected[grid.index(x, invert ? 3 - y : y, 0)] = film;
                    EXPECT_EQ(extract(grid, source, film, invert), expected);
                }
}

TEST_F(FilmExtractionTest, FilmThatTheVolumeDoesNotHoldGivesAnEmptyResult)
{
    const Grid grid{3, 4, 5};
    for (const std::uint32_t id : {0U, 2U, film, 4294967295U})
        for (const bool invert : {false, true})
            EXPECT_EQ(extract(grid, Materials(grid.cells(), wafer), id, invert),
                      Materials(grid.cells(), 0));
    SourceVolume source = sourceOf(grid, Materials(grid.cells(), wafer));
    const Volume result = played(source, film, false);
    ASSERT_NE(result, nullptr);
    Fakes::expectMaterials(*result, Materials(grid.cells(), 0));
    source.expectUnchanged();
}

TEST_F(FilmExtractionTest, VoidIsNoFilm)
{
    const Grid grid{3, 4, 5};
    EXPECT_EQ(extract(grid, Materials(grid.cells(), 0), 0, false), Materials(grid.cells(), 0));
}

TEST_F(FilmExtractionTest, AnyIdCanBeAFilm)
{
    const Grid grid{3, 4, 5};
    for (const std::uint32_t id : {1U, 255U, 256U, 65536U, 2147483648U, 4294967295U})
        expectRule(
            grid,
            Support::materialsBy(grid, [&](auto, std::uint32_t y,
                                           std::uint32_t z) { return z == 2 || y == 1 ? id : 2U; }),
            id);
}

TEST_F(FilmExtractionTest, VolumesWithASizeOfZeroGiveAnEmptyList)
{
    for (const Grid &grid : {Grid{0, 3, 5}, Grid{4, 0, 5}, Grid{4, 3, 0}, Grid{0, 0, 0},
                             Grid{4294967295, 0, 4294967295}, Grid{4294967295, 1, 0}})
        for (const bool invert : {false, true})
            EXPECT_TRUE(extract(grid, {}, film, invert).empty());
}

TEST_F(FilmExtractionTest, EveryVolumeOfTwelveCellsFollowsTheRule)
{
    for (const Grid &grid : {Grid{3, 2, 2}, Grid{2, 3, 2}, Grid{2, 2, 3}})
        for (std::uint32_t bits = 0; bits < 4096; ++bits) {
            Materials materials;
            for (unsigned i = 0; i < 12; ++i)
                materials.push_back(bits >> i & 1U ? film : wafer);
            const auto volume = Support::makeVolume(grid, materials);
            for (const bool invert : {false, true})
                ASSERT_EQ(FilmExtraction(volume.get(), film, invert).extract(),
                          FilmExtractionRule::extracted(grid, materials, film, invert))
                    << "bits " << bits;
        }
}

TEST_F(FilmExtractionTest, RandomVolumesFollowTheRule)
{
    // From lone cells over labyrinths to solids with holes.
    for (std::uint32_t seed = 1; seed <= 400; ++seed) {
        SCOPED_TRACE(testing::Message() << "seed " << seed);
        std::mt19937 random(seed);
        const auto size = [&] { return 1 + std::uint32_t(random() % 11); };
        const Grid grid{size(), size(), size()};
        const std::uint32_t percent =
            std::vector<std::uint32_t>{3, 20, 31, 35, 45, 60, 90}[random() % 7];
        const std::uint32_t floor = random() % 2 == 0 ? 0 : random() % grid.sizeZ;
        expectRule(grid, Support::materialsBy(grid, [&](auto, auto, std::uint32_t z) {
                       return random() % 100 < percent && z >= floor ? film : random() % 4;
                   }));
    }
}

TEST_F(FilmExtractionTest, LargeVolumesFollowTheRule)
{
    const Grid grids[] = {{4, 5, 63},  {4, 5, 64},  {4, 5, 65},   {5, 6, 70},  {3, 4, 127},
                          {3, 4, 128}, {3, 4, 129}, {70, 66, 68}, {70, 3, 64}, {2, 70, 200},
                          {1, 1, 300}, {1, 200, 1}, {200, 1, 1}};
    for (const Grid &grid : grids)
        for (const std::uint32_t percent : {33, 50, 97}) {
            const std::uint32_t seed = grid.sizeX + grid.sizeZ + percent;
            SCOPED_TRACE(testing::Message() << "seed " << seed << ", " << percent << " percent");
            std::mt19937 random(seed);
            expectRule(grid, Support::materialsBy(grid, [&](auto, auto, std::uint32_t z) {
                           return random() % 100 < percent && z > grid.sizeZ / 5 ? film : wafer;
                       }));
        }
}

TEST_F(FilmExtractionTest, BodiesGoAcrossWordsOfBitsAndGoDownByAnyNumberOfLayers)
{
    for (const std::uint32_t lowest : {0U, 1U, 31U, 62U, 63U, 64U, 65U, 127U, 128U, 139U})
        for (const std::uint32_t length : {1U, 2U, 5U, 64U, 65U}) {
            SCOPED_TRACE(testing::Message() << "from " << lowest << ", " << length << " cells");
            // A column, and a longer one beside it that one cell joins to it.
            const Grid grid{3, 3, 205};
            expectRule(
                grid,
                Support::materialsBy(grid, [&](std::uint32_t x, std::uint32_t y, std::uint32_t z) {
                    const bool column = x == 0 && y == 1 && z >= lowest && z < lowest + length;
                    const bool beside = x == 1 && y == 1 && z > lowest / 2 && z < lowest + length;
                    return column || beside ? film : wafer;
                }));
        }
}

TEST_F(FilmExtractionTest, WindingBodiesComeOutWhole)
{
    // One path through all columns, up and down in turn; then in walls that leave a slit.
    const Grid grid{1, 15, 70};
    const auto snake = [&](auto, std::uint32_t y, std::uint32_t z) {
        return y % 2 == 0 || z == (y % 4 == 1 ? 69U : 3U) ? z >= 3 ? film : wafer : wafer;
    };
    expectRule(grid, Support::materialsBy(grid, snake));
    const Grid walls{15, 9, 12};
    expectRule(walls,
               Support::materialsBy(walls, [](std::uint32_t x, std::uint32_t y, std::uint32_t z) {
                   if (x % 2 == 0)
                       return film;
                   return y == (x % 4 == 1 ? 8U : 0U) && z == 11 ? film : wafer;
               }));
    // Combs that are joined only at the very end: the back of one lies at the highest x.
    const Grid comb{20, 9, 5};
    expectRule(comb, Support::materialsBy(comb, [](std::uint32_t x, std::uint32_t y, auto) {
                   return y % 2 == 0 || x == 19 ? film : wafer;
               }));
}

TEST_F(FilmExtractionTest, WaitsForTheCellsAndNotForTheWorkingArray)
{
    const Grid grid{3, 4, 5};
    const Materials materials(grid.cells(), film);
    SourceVolume source = sourceOf(grid, materials);
    for (const bool working : {false, true}) {
        FilmExtraction extraction(source.volume().get(), film, false);
        if (working)
            source.volume()->nextVoxels();
        else
            source.volume()->voxels();
        auto ids = std::async(std::launch::async, [&] { return extraction.extract(); });
        if (working) {
            EXPECT_EQ(ids.wait_for(std::chrono::seconds(20)), std::future_status::ready);
            source.volume()->releaseNextVoxels();
        } else {
            EXPECT_EQ(ids.wait_for(std::chrono::milliseconds(30)), std::future_status::timeout);
            source.volume()->releaseVoxels();
        }
        EXPECT_EQ(ids.get(), materials);
    }
}

TEST_F(FilmExtractionTest, ResultStandsTenCellsBesideTheSourceInBothArrays)
{
    for (std::uint32_t seed = 1; seed <= 40; ++seed) {
        SCOPED_TRACE(testing::Message() << "seed " << seed);
        std::mt19937 random(seed);
        const auto size = [&] { return 1 + std::uint32_t(random() % 7); };
        const auto edge = [&] { return float(1 + random() % 8) / 4.0f; };
        const Grid grid{size(), size(), size(), edge(), edge(), edge()};
        const Materials materials = Support::materialsBy(
            grid, [&](auto, auto, auto) { return random() % 2 == 0 ? film : random() % 3; });
        const bool invert = random() % 2 == 0;
        SourceVolume source = sourceOf(grid, materials, Vector3D(seed, -3, 0.5));
        const Volume result = played(source, film, invert);
        ASSERT_NE(result, nullptr);
        EXPECT_EQ(result->sizeX(), grid.sizeX);
        EXPECT_EQ(result->sizeY(), grid.sizeY);
        EXPECT_EQ(result->sizeZ(), grid.sizeZ);
        EXPECT_EQ(result->cellSizeX(), grid.cellSizeX);
        EXPECT_EQ(result->cellSizeY(), grid.cellSizeY);
        EXPECT_EQ(result->cellSizeZ(), grid.cellSizeZ);
        const double largest = std::max({grid.cellSizeX, grid.cellSizeY, grid.cellSizeZ});
        EXPECT_EQ(cornerOf(*result), (Corner{seed + (grid.sizeX + 10) * largest, -3, 0.5}));
        EXPECT_EQ(cornerOf(*source.volume()), (Corner{double(seed), -3, 0.5}));
        Fakes::expectMaterials(*result,
                               FilmExtractionRule::extracted(grid, materials, film, invert));
        source.expectUnchanged();
    }
}

} // namespace
