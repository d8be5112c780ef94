#include "Core/Operations/IsotropicFilmEtching/IsotropicFilmEtching.h"

#include "DistanceFrontRule.h"
#include "DistanceFrontRuns.h"

#include "Support/Volumes.h"

#include <QString>
#include <QThreadPool>
#include <QtGlobal>

#include <gtest/gtest.h>

#include <atomic>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <optional>
#include <random>
#include <vector>

using namespace DistanceFrontRule;
using Support::Grid;

namespace {

/// What is etched, unless a test says otherwise, and what is not.
constexpr std::uint32_t film = 1;
constexpr std::uint32_t mask = 3;

Process etching(float depth, std::uint32_t material = film)
{
    return {true, material, depth};
}

/// The film up to so many layers below the top of the volume.
Case flatFilm(const Grid &grid, float depth, int voidLayers)
{
    const int top = int(grid.sizeZ) - voidLayers;
    return caseOf(grid, etching(depth), [top](int, int, int z) { return z < top ? film : 0U; });
}

/// One void cell at (x, y, z) in nothing but film.
Case loneHole(const Grid &grid, float depth, const Place &hole)
{
    return caseOf(grid, etching(depth), [hole](int x, int y, int z) {
        return x == hole.x && y == hole.y && z == hole.z ? 0U : film;
    });
}

/// Expects the hole that loneHole() leaves in cells of one unit: the ball around it as far as the
/// volume goes, without what takes more steps from face to face than there are.
void expectBall(const Grid &grid, float depth, const Place &hole)
{
    const Case given = loneHole(grid, depth, hole);
    const int steps = int(stepCountOf(grid, given.process));
    for (const int threads : {1, int(grid.sizeX) / 2 + 1}) {
        Sample sample(given);
        sample.run(threads);
        const Materials expected = Support::materialsBy(grid, [&](int x, int y, int z) {
            const Place offset = Place{x, y, z} - hole;
            const int faces = std::abs(offset.x) + std::abs(offset.y) + std::abs(offset.z);
            const float squared =
                float(offset.x * offset.x + offset.y * offset.y + offset.z * offset.z);
            return squared <= depth * depth && faces <= steps ? 0U : film;
        });
        EXPECT_EQ(sample.materials(), expected) << given;
    }
}

void expectUnchanged(const Case &given)
{
    for (const int threads : {1, 2, int(given.grid.sizeX) / 2 + 1}) {
        Sample sample(given);
        sample.run(threads);
        EXPECT_EQ(sample.materials(), given.materials) << given;
        EXPECT_EQ(sample.nextMaterials(), given.materials) << given;
    }
    expectRule(given);
}

/// A channel of film, one cell wide, that winds up between walls of the mask in the layer y = 1 of
/// a volume of three. Its first place is the only void cell.
std::vector<Place> channelPlaces(int width, int rows)
{
    std::vector<Place> places;
    for (int row = 0; row < rows; ++row) {
        const bool back = row % 2 == 1;
        for (int i = 0; i < width; ++i)
            places.push_back({1 + (back ? width - 1 - i : i), 1, 2 * row});
        if (row + 1 < rows)
            places.push_back({back ? 1 : width, 1, 2 * row + 1});
    }
    return places;
}
Case channelCase(const Grid &grid, float depth, const std::vector<Place> &places)
{
    Case given = caseOf(grid, etching(depth), [](int, int, int) { return mask; });
    for (const Place &place : places)
        given.materials[indexOf(grid, place)] = film;
    given.materials[indexOf(grid, places.front())] = 0;
    return given;
}
/// How many cells of the channel are void after the run, the first not counted. Expects them to be
/// those that follow the first.
int etchedPlaces(const Case &given, const std::vector<Place> &places, int threads = 1)
{
    Sample sample(given);
    sample.run(threads);
    std::size_t count = 1;
    while (count < places.size() && sample.materials()[indexOf(given.grid, places[count])] == 0)
        ++count;
    Case expected = given;
    for (std::size_t i = 0; i < count; ++i)
        expected.materials[indexOf(given.grid, places[i])] = 0;
    EXPECT_EQ(sample.materials(), expected.materials);
    return int(count) - 1;
}

Support::MaterialRule trench()
{
    return [](int x, int, int z) { return z < 7 || (z < 11 && (x < 5 || x > 7)) ? film : 0U; };
}
/// The same, along x, in film over a layer that stays.
Support::MaterialRule trenchAcrossStrips()
{
    return [](int, int y, int z) {
        if (z < 2)
            return mask;
        return z < 5 || (z < 10 && (y < 4 || y > 5)) ? film : 0U;
    };
}
/// Film around a bubble.
Support::MaterialRule bubble(int center, int radius)
{
    return [=](int x, int y, int z) {
        const int squared =
            (x - center) * (x - center) + (y - center) * (y - center) + (z - center) * (z - center);
        return squared <= radius * radius ? 0U : film;
    };
}
/// A block that is attacked from all sides, next to one of the mask, on a floor of both.
Support::MaterialRule cornersAndEdges()
{
    return [](int x, int y, int z) {
        if (x >= 1 && x < 7 && y >= 2 && y < 8 && z >= 3 && z < 10)
            return film;
        if (x >= 7 && x < 9 && y >= 4 && y < 10 && z < 8)
            return mask;
        return z < 2 ? (x + y) % 3 == 0 ? mask : film : 0U;
    };
}
/// Walls of one cell, of film or of the mask, with gaps, and cells that meet at edges only.
Support::MaterialRule thinWalls()
{
    return [](int x, int y, int z) {
        if (x == 4 && (y != 5 || z != 5))
            return z < 4 ? film : mask;
        if (y == 8 && (x != 9 || z != 3))
            return film;
        return x > 8 && y < 4 && x - 8 == z ? film : x == 0 ? 2U : 0U;
    };
}
/// A mask with a slot and a hole over the film, on a substrate that stays.
Support::MaterialRule maskedFilm()
{
    return [](int x, int y, int z) {
        if (z < 2)
            return 2U;
        if (z < 6)
            return film;
        const bool open = x == 7 || (x == 2 && y == 3);
        return z == 6 && !open ? mask : 0U;
    };
}
/// Film that is only attacked from one face of it, and that the front goes through along x.
Support::MaterialRule blockAlongX(int start)
{
    return [start](int x, int y, int z) {
        if ((y + z) % 5 == 0)
            return mask;
        return x < start ? 0U : film;
    };
}

/// Single holes in so many rooms of `width` layers along x, as far from the ends of their room as
/// can be.
Support::MaterialRule holes(int width)
{
    return [width](int x, int y, int z) {
        const bool hole = x % width == width / 2 && (y + 2 * z) % 3 == 0;
        return hole ? 0U : (x + y + z) % 11 == 0 ? mask : film;
    };
}

const std::vector<float> &depths()
{
    static const std::vector<float> values = {0.5f, 1.0f, 1.4142135f, 2.0f, 2.5f,
                                              3.0f, 3.3f, 5.0f,       7.25f};
    return values;
}

std::atomic<int> s_logLines = 0;
void countLogLine(QtMsgType, const QMessageLogContext &, const QString &)
{
    ++s_logLines;
}

} // namespace

TEST(IsotropicFilmEtchingTest, FlatFilmLosesExactlyTenLayers)
{
    const Grid grid = {6, 5, 16};
    const Case given = flatFilm(grid, 10.0f, 3);
    for (const int threads : {1, 4}) {
        Sample sample(given);
        sample.run(threads);
        EXPECT_EQ(sample.materials(),
                  Support::materialsBy(grid, [](int, int, int z) { return z < 3 ? film : 0U; }));
        for (int layer = 1; layer <= 10; ++layer) {
            const Cell &cell = sample.at(3, 2, 13 - layer);
            EXPECT_FALSE(cell.reached);
            EXPECT_EQ(cell.distance, (Vector{0.0f, 0.0f, float(layer)}));
        }
        EXPECT_EQ(sample.at(3, 2, 2).distance, (Vector{10.0f, 10.0f, 10.0f}));
    }
    expectRule(given);
}

TEST(IsotropicFilmEtchingTest, FrontGoesOneCellAStepForSeventeenStepsOfTenUnits)
{
    const Grid grid = {8, 3, 9};
    const std::vector<Place> places = channelPlaces(6, 4);
    const Case given = channelCase(grid, 10.0f, places);
    ASSERT_EQ(places.size(), 27U);
    for (const int threads : {1, 5})
        EXPECT_EQ(etchedPlaces(given, places, threads), 17);
    expectRule(given);
}

TEST(IsotropicFilmEtchingTest, TenUnitsOnThinCellsAreFortyNineSteps)
{
    // The channel stays within 8 units of its beginning.
    const Grid grid = {8, 3, 17, 1.0f, 1.0f, 0.35f};
    const std::vector<Place> places = channelPlaces(6, 8);
    const Case given = channelCase(grid, 10.0f, places);
    ASSERT_EQ(places.size(), 55U);
    for (const int threads : {1, 5})
        EXPECT_EQ(etchedPlaces(given, places, threads), 49);
    expectRule(given);
    expectRule(flatFilm({4, 5, 36, 1.0f, 1.0f, 0.35f}, 10.0f, 3));
}

TEST(IsotropicFilmEtchingTest, FractionsOfACellCountAsAWholeOneInTheSteps)
{
    // A bent channel that stays within two cells of its beginning.
    const Grid grid = {4, 4, 4};
    const std::vector<Place> places = {{1, 1, 1}, {2, 1, 1}, {2, 2, 1}, {2, 2, 2},
                                       {1, 2, 2}, {0, 2, 2}, {0, 1, 2}};
    EXPECT_EQ(etchedPlaces(channelCase(grid, 1.0f, places), places), 1);
    EXPECT_EQ(etchedPlaces(channelCase(grid, 1.75f, places), places), 3);
    EXPECT_EQ(etchedPlaces(channelCase(grid, 2.0f, places), places), 3);
    EXPECT_EQ(etchedPlaces(channelCase(grid, 2.01f, places), places), 5);
    EXPECT_EQ(etchedPlaces(channelCase(grid, 2.5f, places), places), 5);
    EXPECT_EQ(etchedPlaces(channelCase(grid, 3.0f, places), places), 5);
    EXPECT_EQ(etchedPlaces(channelCase(grid, 3.3f, places), places), 6);
}

TEST(IsotropicFilmEtchingTest, DepthIsDividedByTheCellInSinglePrecision)
{
    // 0.3f over 0.1f is a little more than 3, and exactly 3 when rounded to a float.
    ASSERT_GT(double(0.3f) / double(0.1f), 3.0);
    const Grid grid = {4, 4, 4, 0.1f, 0.1f, 0.1f};
    const std::vector<Place> places = {{1, 1, 1}, {2, 1, 1}, {2, 2, 1}, {2, 2, 2},
                                       {1, 2, 2}, {0, 2, 2}, {0, 1, 2}};
    const Case given = channelCase(grid, 0.3f, places);
    EXPECT_EQ(etchedPlaces(given, places), 5);
    expectRule(given);
}

TEST(IsotropicFilmEtchingTest, LoneHoleBecomesTheBallOfTheDepth)
{
    for (const float depth : {1.0f, 1.5f, 2.0f, 2.5f, 3.0f, 3.3f, 4.0f, 5.0f, 6.0f})
        expectBall({15, 13, 14}, depth, {7, 6, 7});
    expectRule(loneHole({13, 13, 13}, 5.0f, {6, 6, 6}));
}

TEST(IsotropicFilmEtchingTest, BallLacksTheCornerThatTakesOneStepMoreThanThereAre)
{
    // (15, 15, 15) is 25.98 units away, and 45 faces.
    const Grid grid = {28, 28, 28};
    ASSERT_EQ(stepCountOf(grid, etching(26.0f)), 44U);
    expectBall(grid, 26.0f, {0, 0, 0});
    Sample sample(loneHole(grid, 26.0f, {0, 0, 0}));
    sample.run(1);
    EXPECT_EQ(sample.at(15, 15, 14).material, 0U);
    EXPECT_EQ(sample.at(15, 15, 15).material, film);
}

TEST(IsotropicFilmEtchingTest, CellAtExactlyTheDepthIsRemoved)
{
    const Grid grid = {7, 7, 7};
    Sample at(loneHole(grid, 5.0f, {0, 0, 0}));
    at.run(1);
    Sample below(loneHole(grid, std::nextafter(5.0f, 0.0f), {0, 0, 0}));
    below.run(1);
    for (const Place &place : {Place{5, 0, 0}, Place{0, 5, 0}, Place{0, 0, 5}, Place{3, 4, 0},
                               Place{0, 3, 4}, Place{4, 0, 3}}) {
        EXPECT_EQ(at.at(place.x, place.y, place.z).material, 0U);
        EXPECT_EQ(below.at(place.x, place.y, place.z).material, film);
    }
    EXPECT_EQ(below.at(2, 4, 2).material, 0U);
}

TEST(IsotropicFilmEtchingTest, FirstFaceInOrderStandsAmongEqualCandidates)
{
    const Grid grid = {3, 3, 3};
    const Place middle = {1, 1, 1};
    for (std::size_t first = 0; first < faceNeighbors.size(); ++first) {
        Materials materials(grid.cells(), film);
        for (std::size_t k = first; k < faceNeighbors.size(); ++k)
            materials[indexOf(grid, middle + faceNeighbors[k])] = 0;
        Sample sample({grid, materials, etching(1.0f)});
        sample.run(1);
        const Place &face = faceNeighbors[first];
        EXPECT_EQ(sample.at(1, 1, 1).material, 0U);
        EXPECT_EQ(sample.at(1, 1, 1).distance,
                  (Vector{float(face.x), float(face.y), float(face.z)}));
    }
}

TEST(IsotropicFilmEtchingTest, CornerContactAloneRemovesNothing)
{
    // Film that touches the hole at its edges and corners only, in a mask.
    const Grid grid = {3, 3, 3};
    for (const float depth : {1.0f, 2.0f, 5.0f}) {
        expectUnchanged(caseOf(grid, etching(depth), [](int x, int y, int z) {
            const int faces = std::abs(x - 1) + std::abs(y - 1) + std::abs(z - 1);
            return faces == 0 ? 0U : faces == 1 ? mask : film;
        }));
    }
}

TEST(IsotropicFilmEtchingTest, ShapesFollowTheRule)
{
    for (const float depth : depths()) {
        SCOPED_TRACE(depth);
        const Process process = etching(depth);
        expectRule(caseOf({14, 4, 14}, process, trench()));
        expectRule(caseOf({5, 10, 12}, process, trenchAcrossStrips()));
        expectRule(caseOf({15, 15, 15}, process, bubble(7, 2)));
        expectRule(caseOf({12, 13, 11}, process, cornersAndEdges()));
        expectRule(caseOf({12, 12, 10}, process, thinWalls()));
        expectRule(caseOf({12, 8, 9}, process, maskedFilm()));
        expectRule(caseOf({9, 10, 10}, process, blockAlongX(2)));
    }
}

TEST(IsotropicFilmEtchingTest, CellsOfThreeDifferentSizesFollowTheRule)
{
    for (const float depth : {0.35f, 0.7f, 1.0f, 2.5f, 3.3f}) {
        SCOPED_TRACE(depth);
        const Process process = etching(depth);
        expectRule(caseOf({9, 10, 12, 1.0f, 1.0f, 0.35f}, process, cornersAndEdges()));
        expectRule(caseOf({10, 12, 10, 0.7f, 0.3f, 1.1f}, process, thinWalls()));
        expectRule(caseOf({14, 4, 14, 0.1f, 2.0f, 0.3f}, process, trench()));
        expectRule(caseOf({12, 8, 9, 0.5f, 1.0f, 0.25f}, process, maskedFilm()));
    }
}

TEST(IsotropicFilmEtchingTest, OneCellAlongAnAxisHasNoNeighborsThere)
{
    for (const float depth : {1.0f, 2.5f, 6.0f}) {
        for (const Grid &grid :
             {Grid{1, 9, 12}, Grid{9, 1, 12}, Grid{9, 12, 1}, Grid{1, 1, 14}, Grid{1, 14, 1},
              Grid{14, 1, 1}, Grid{1, 9, 70}, Grid{2, 1, 3}, Grid{2, 2, 2}}) {
            expectRule({grid, randomMaterials(grid, 11, 90), etching(depth)});
            expectRule(loneHole(grid, depth, {0, 0, 0}));
        }
    }
    for (const std::uint32_t material : {0U, 1U}) {
        Sample sample({{1, 1, 1}, {material}, etching(3.0f)});
        sample.run(1);
        EXPECT_EQ(sample.materials(), (Materials{material}));
    }
}

TEST(IsotropicFilmEtchingTest, VolumeOfOneLayerSkipsTheFacesAboveAndBelow)
{
    expectBall({9, 11, 1}, 3.0f, {4, 5, 0});
}

TEST(IsotropicFilmEtchingTest, TallVolumesFollowTheRule)
{
    for (const std::uint32_t sizeZ : {63U, 64U, 65U, 127U, 128U, 130U}) {
        for (const std::uint32_t percent : {100U, 97U, 50U}) {
            const Grid grid = {4, 5, sizeZ};
            Materials materials = randomMaterials(grid, sizeZ + percent, percent);
            // Single holes at both ends and at the lengths of machine words.
            for (const int z : {0, 31, 63, 64, 127, 128, int(sizeZ) - 1})
                if (z < int(sizeZ))
                    materials[indexOf(grid, {z % 4, z % 5, z})] = 0;
            expectRule({grid, materials, etching(3.3f)});
            expectRule({grid, materials, etching(20.0f)});
        }
    }
}

TEST(IsotropicFilmEtchingTest, RandomVolumesFollowTheRule)
{
    for (std::uint32_t seed = 1; seed <= 200; ++seed) {
        SCOPED_TRACE(testing::Message() << "seed " << seed);
        std::mt19937 random(seed);
        const std::vector<Grid> cells = {
            {0, 0, 0}, {0, 0, 0, 1.0f, 1.0f, 0.35f}, {0, 0, 0, 0.3f, 0.7f, 0.1f}};
        Grid grid = cells[random() % cells.size()];
        grid.sizeX = 1 + random() % 12;
        grid.sizeY = 1 + random() % 12;
        grid.sizeZ = random() % 4 == 0 ? 60 + random() % 10 : 1 + random() % 14;
        const std::vector<std::uint32_t> percents = {5, 30, 60, 80, 90, 97, 99};
        const std::uint32_t percent = percents[random() % percents.size()];
        const float depth = depths()[random() % depths().size()] * grid.cellSizeX;
        const std::uint32_t material = random() % 4 == 0 ? 2 : 1;
        expectRule({grid, randomMaterials(grid, seed, percent), etching(depth, material)});
    }
}

TEST(IsotropicFilmEtchingTest, DepthZeroChangesNoCell)
{
    EXPECT_EQ(stepCountOf({4, 4, 4}, etching(0.0f)), 0U);
    expectUnchanged(flatFilm({5, 4, 6}, 0.0f, 2));
    expectUnchanged({{6, 6, 6}, randomMaterials({6, 6, 6}, 3, 70), etching(0.0f)});
}

TEST(IsotropicFilmEtchingTest, DepthBelowTheSmallestCellRemovesNothing)
{
    expectUnchanged(flatFilm({5, 4, 6}, 0.99f, 2));
    expectUnchanged(flatFilm({5, 4, 6, 1.0f, 1.0f, 0.35f}, 0.34f, 2));
    expectUnchanged(flatFilm({5, 4, 6}, std::nextafter(1.0f, 0.0f), 2));
    expectUnchanged(flatFilm({5, 4, 6}, 1e-30f, 2));
}

TEST(IsotropicFilmEtchingTest, DepthOfOneCellRemovesTheFacesAlongThatAxisOnly)
{
    const Grid grid = {5, 5, 5, 1.0f, 0.75f, 0.5f};
    Sample sample(loneHole(grid, 0.5f, {2, 2, 2}));
    sample.run(1);
    EXPECT_EQ(sample.materials(), Support::materialsBy(grid, [](int x, int y, int z) {
                  return x == 2 && y == 2 && std::abs(z - 2) <= 1 ? 0U : film;
              }));
}

TEST(IsotropicFilmEtchingTest, NegativeDepthChangesNoCell)
{
    expectUnchanged(flatFilm({5, 4, 6}, -0.5f, 2));
    expectUnchanged(flatFilm({5, 4, 6}, -10.0f, 2));
}

TEST(IsotropicFilmEtchingTest, DepthThatIsNotANumberChangesNoCell)
{
    expectUnchanged(flatFilm({5, 4, 6}, std::numeric_limits<float>::quiet_NaN(), 2));
}

TEST(IsotropicFilmEtchingTest, SquaresOutsideTheRangeOfAFloatFollowTheRule)
{
    // Too large to be compared, or too small to differ.
    expectUnchanged(flatFilm({4, 3, 9, 1e20f, 1e20f, 1e20f}, 5e20f, 2));
    expectUnchanged(flatFilm({4, 3, 9, 1e-25f, 1e-25f, 1e-25f}, 5e-25f, 2));
    expectRule(flatFilm({4, 3, 9, 1e-21f, 1e-21f, 1e-21f}, 5e-21f, 2));
}

TEST(IsotropicFilmEtchingTest, DepthBeyondTheVolumeRemovesAllOfTheFilm)
{
    const Grid grid = {6, 5, 4};
    const Case given = loneHole(grid, 100.0f, {4, 0, 2});
    Sample sample(given);
    sample.run(1);
    EXPECT_EQ(sample.materials(), Materials(grid.cells(), 0));
    expectRule(given);
}

TEST(IsotropicFilmEtchingTest, EmptyVolumeStaysEmpty)
{
    expectUnchanged(caseOf({6, 5, 7}, etching(5.0f), [](int, int, int) { return 0U; }));
}

TEST(IsotropicFilmEtchingTest, FullVolumeStaysAsItIs)
{
    // No void cell, no front: the sides of the volume are not exposed.
    expectUnchanged(caseOf({6, 5, 7}, etching(5.0f), [](int, int, int) { return film; }));
    expectUnchanged({{6, 5, 7}, randomMaterials({6, 5, 7}, 5, 100), etching(5.0f)});
}

TEST(IsotropicFilmEtchingTest, FrontStopsAtTheBordersOfTheVolume)
{
    // At corners, edges and sides; the next cell in the arrays lies at the opposite side.
    const Grid grid = {9, 8, 10};
    for (const int x : {0, 4, 8})
        for (const int y : {0, 4, 7})
            for (const int z : {0, 5, 9})
                expectBall(grid, 3.0f, {x, y, z});
}

TEST(IsotropicFilmEtchingTest, MaterialThatIsNotThereRemovesNothing)
{
    Case given = flatFilm({5, 4, 9}, 4.0f, 3);
    given.process.material = 8;
    expectUnchanged(given);
    expectUnchanged({{7, 7, 7}, randomMaterials({7, 7, 7}, 9, 80), etching(3.0f, 8)});
}

TEST(IsotropicFilmEtchingTest, MaterialZeroRemovesNothing)
{
    Case given = flatFilm({5, 4, 9}, 4.0f, 3);
    given.process.material = 0;
    expectUnchanged(given);
    expectUnchanged({{7, 7, 7}, randomMaterials({7, 7, 7}, 9, 80), etching(3.0f, 0)});
}

TEST(IsotropicFilmEtchingTest, FilmIsUndercutUpToTheDepth)
{
    // One layer of film under a mask with a slot along y. A film cell k cells beside the slot is
    // sqrt(k * k + 1) units from it.
    const Grid grid = {17, 5, 5};
    for (const int slot : {0, 8, 16}) {
        const Case given = caseOf(grid, etching(5.0f), [slot](int x, int, int z) {
            if (z == 0)
                return 2U;
            if (z == 1)
                return film;
            return z == 2 && x != slot ? mask : 0U;
        });
        for (const int threads : {1, 9}) {
            Sample sample(given);
            sample.run(threads);
            EXPECT_EQ(sample.materials(), Support::materialsBy(grid, [&](int x, int y, int z) {
                          if (z == 1 && std::abs(x - slot) <= 4)
                              return 0U;
                          return given.materials[indexOf(grid, {x, y, z})];
                      }));
        }
        expectRule(given);
    }
}

TEST(IsotropicFilmEtchingTest, UndercutIsMeasuredFromTheOpeningThroughEtchedCells)
{
    // A thick film under a mask with one hole.
    const Grid grid = {15, 15, 10};
    const Case given = caseOf(grid, etching(6.0f), [](int x, int y, int z) {
        return z < 8 ? film : z == 8 && (x != 7 || y != 7) ? mask : 0U;
    });
    Sample sample(given);
    sample.run(1);
    EXPECT_EQ(sample.materials(), Support::materialsBy(grid, [&](int x, int y, int z) {
                  const int squared = (x - 7) * (x - 7) + (y - 7) * (y - 7) + (z - 8) * (z - 8);
                  return z < 8 && squared <= 36 ? 0U : given.materials[indexOf(grid, {x, y, z})];
              }));
    expectRule(given);
}

TEST(IsotropicFilmEtchingTest, OtherMaterialsDoNotCarryTheFront)
{
    // Film behind a closed wall stays, however thin the wall is.
    const Grid grid = {9, 5, 6};
    const Case given = caseOf(grid, etching(20.0f), [](int x, int, int) {
        return x == 0 ? 0U : x == 4 ? mask : film;
    });
    for (const int threads : {1, 5}) {
        Sample sample(given);
        sample.run(threads);
        EXPECT_EQ(sample.materials(), Support::materialsBy(grid, [](int x, int, int) {
                      return x < 4 ? 0U : x == 4 ? mask : film;
                  }));
        EXPECT_EQ(sample.at(4, 2, 2).distance, (Vector{20.0f, 20.0f, 20.0f}));
        EXPECT_FALSE(sample.at(4, 2, 2).reached);
    }
    expectRule(given);
}

TEST(IsotropicFilmEtchingTest, OnlyTheGivenMaterialOfManyIsRemoved)
{
    const Grid grid = {8, 4, 9};
    const Case given = caseOf(grid, etching(3.0f, 0xFFFFFFFF), [](int x, int, int z) {
        return z < 6 ? std::vector<std::uint32_t>{1, 0xFFFFFFFF, 9, 9}[x % 4] : 0U;
    });
    Sample sample(given);
    sample.run(1);
    EXPECT_EQ(sample.materials(), Support::materialsBy(grid, [&](int x, int y, int z) {
                  return z >= 3 && x % 4 == 1 ? 0U : given.materials[indexOf(grid, {x, y, z})];
              }));
    expectRule(given);
}

TEST(IsotropicFilmEtchingTest, SecondEtchingStartsWhereTheFirstEnded)
{
    // Each takes an odd number of steps and so leaves the arrays swapped on the calling thread.
    const Grid grid = {5, 4, 12};
    for (const int threads : {1, 3}) {
        const Support::PoolThreads pool(threads);
        const auto volume = Support::makeVolume(grid, flatFilm(grid, 0.0f, 2).materials);
        for (const int layers : {7, 4}) {
            Core::Operations::IsotropicFilmEtching engine(volume.get(), film, 3.0f);
            engine.runEtching();
            const Materials expected =
                Support::materialsBy(grid, [&](int, int, int z) { return z < layers ? film : 0U; });
            EXPECT_EQ(Support::materialsOf(*volume), expected);
            EXPECT_EQ(Support::nextMaterialsOf(*volume), expected);
        }
    }
}

TEST(IsotropicFilmEtchingTest, EveryStepOnTheCallingThreadSwapsTheArrays)
{
    for (const float depth : {0.0f, 1.0f, 2.0f, 3.0f, 4.0f, 6.0f, 10.0f}) {
        const Case given = flatFilm({7, 3, 12}, depth, 1);
        const bool odd = stepCountOf(given.grid, given.process) % 2 == 1;
        for (const int threads : {4, 8}) {
            Sample sample(given);
            sample.run(threads);
            EXPECT_EQ(sample.isSwapped(), odd) << given;
            EXPECT_EQ(sample.isInPlace(), !odd) << given;
        }
    }
    // Steps over an empty list swap as well: one unit takes one.
    Sample sample(caseOf({1, 3, 3}, etching(1.0f), [](int, int, int) { return 0U; }));
    sample.run(1);
    EXPECT_TRUE(sample.isSwapped());
}

TEST(IsotropicFilmEtchingTest, ArraysKeepTheirNamesOnThePool)
{
    for (const float depth : {1.0f, 6.0f, 10.0f}) {
        for (const int threads : {1, 2, 3, 4}) {
            Sample sample(flatFilm({8, 3, 12}, depth, 1));
            sample.run(threads);
            EXPECT_TRUE(sample.isInPlace());
        }
    }
}

TEST(IsotropicFilmEtchingTest, WorkingBufferHoldsTheSameFronts)
{
    for (const std::uint32_t percent : {95U, 60U}) {
        const Grid grid = {9, 8, 10};
        const Case given = {grid, randomMaterials(grid, 21, percent), etching(2.5f)};
        const Rule rule = ruleOf(given, stripsOf(grid, 1));
        for (const int threads : {1, 5}) {
            Sample sample(given);
            sample.run(threads);
            EXPECT_TRUE(agree(given, sample.nextVoxels(), rule.nextVoxels(), hasSameFront));
        }
    }
}

TEST(IsotropicFilmEtchingTest, VisitedCellsTakeTheAtomsOfTheWorkingBuffer)
{
    // The front is at cells of other materials too, though it leaves them as they are.
    const Grid grid = {8, 7, 12};
    for (const Case &given :
         {flatFilm(grid, 3.0f, 2), Case{grid, randomMaterials(grid, 31, 95), etching(3.0f)}}) {
        const Rule rule = ruleOf(given, stripsOf(grid, 1));
        for (const int threads : {1, 5}) {
            Sample sample(given);
            sample.run(threads);
            const bool swapped = sample.isSwapped();
            EXPECT_TRUE(agree(given, swapped ? sample.nextVoxels() : sample.voxels(), rule.voxels(),
                              hasSameAtoms));
            EXPECT_TRUE(agree(given, swapped ? sample.voxels() : sample.nextVoxels(),
                              rule.nextVoxels(), hasSameAtoms));
        }
    }
}

TEST(IsotropicFilmEtchingTest, ConstructionLeavesTheVolumeAlone)
{
    const Case given = flatFilm({5, 4, 6}, 3.0f, 2);
    const auto volume = Support::makeVolume(given.grid, given.materials);
    const std::size_t count = given.grid.cells();
    write(volume->voxels(), leftovers(given));
    volume->releaseVoxels();
    write(volume->nextVoxels(), nextLeftovers(given));
    volume->releaseNextVoxels();
    {
        const Core::Operations::IsotropicFilmEtching engine(volume.get(), film, 3.0f);
        // Taken here, or this would never return.
        const Cells voxels = read(volume->voxels(), count);
        const Cells nextVoxels = read(volume->nextVoxels(), count);
        volume->releaseVoxels();
        volume->releaseNextVoxels();
        EXPECT_TRUE(agree(given, voxels, leftovers(given), hasSameMaterialAndFront));
        EXPECT_TRUE(agree(given, nextVoxels, nextLeftovers(given), hasSameMaterialAndFront));
    }
    EXPECT_EQ(Support::materialsOf(*volume), given.materials);
}

TEST(IsotropicFilmEtchingTest, RunWritesNothingToTheLog)
{
    for (const int threads : {1, 4, 8}) {
        Sample sample(flatFilm({8, 3, 9}, 4.0f, 2));
        s_logLines = 0;
        const QtMessageHandler before = qInstallMessageHandler(countLogLine);
        sample.run(threads);
        qInstallMessageHandler(before);
        EXPECT_EQ(s_logLines, 0);
    }
}

TEST(IsotropicFilmEtchingTest, FewerThanTwoLayersAThreadAreOneStrip)
{
    for (const int threads : {2, 3, 4, 8}) {
        for (const std::uint32_t sizeX : {1U, 2U, std::uint32_t(2 * threads - 1)}) {
            const Grid grid = {sizeX, 9, 10};
            const Case given = {grid, randomMaterials(grid, sizeX, 93), etching(3.3f)};
            const Rule rule = ruleOf(given, {{0, int(grid.sizeX)}});
            Sample sample(given);
            sample.run(threads);
            EXPECT_TRUE(agree(given, sample.voxels(), rule.voxels(), hasSameMaterialAndFront))
                << threads << " threads";
        }
    }
}

TEST(IsotropicFilmEtchingTest, OneThreadIsOneStripOverAllLayers)
{
    for (const std::uint32_t sizeX : {1U, 2U, 3U, 20U}) {
        const Case given = caseOf({sizeX, 8, 9}, etching(4.0f), blockAlongX(1));
        const Rule rule = ruleOf(given, {{0, int(sizeX)}});
        Sample sample(given);
        sample.run(1);
        EXPECT_TRUE(agree(given, sample.voxels(), rule.voxels(), hasSameMaterialAndFront));
    }
}

TEST(IsotropicFilmEtchingTest, StripsInAscendingOrderFollowTheRuleOfStrips)
{
    for (const int threads : {2, 3, 4}) {
        for (const float depth : {1.0f, 2.5f, 4.0f, 6.0f}) {
            const Process process = etching(depth);
            expectRuleOfStrips(caseOf({14, 4, 14}, process, trench()), threads);
            expectRuleOfStrips(caseOf({13, 10, 12}, process, trenchAcrossStrips()), threads);
            expectRuleOfStrips(caseOf({11, 11, 11}, process, bubble(5, 2)), threads);
            expectRuleOfStrips(caseOf({17, 8, 8}, process, blockAlongX(3)), threads);
            expectRuleOfStrips(caseOf({12, 8, 9}, process, maskedFilm()), threads);
            expectRuleOfStrips(caseOf({9, 6, 8, 1.0f, 1.0f, 0.35f}, process, blockAlongX(1)),
                               threads);
        }
    }
    for (std::uint32_t seed = 1; seed <= 12; ++seed) {
        SCOPED_TRACE(testing::Message() << "seed " << seed);
        const Grid grid = {8 + seed, 7, seed % 3 == 0 ? 66U : 9U};
        const Materials materials = randomMaterials(grid, seed, seed % 2 == 0 ? 98 : 85);
        for (const int threads : {2, 3, 4})
            expectRuleOfStrips({grid, materials, etching(3.3f)}, threads);
    }
}

TEST(IsotropicFilmEtchingTest, ThreadsAreCountedAtConstruction)
{
    // Arrays are swapped by the run on the calling thread only, three units taking five steps.
    const Case given = flatFilm({7, 3, 8}, 3.0f, 2);
    {
        Sample sample(given);
        sample.run(4, [] { QThreadPool::globalInstance()->setMaxThreadCount(1); });
        EXPECT_TRUE(sample.isSwapped());
    }
    {
        Sample sample(given);
        sample.run(1, [] { QThreadPool::globalInstance()->setMaxThreadCount(4); });
        EXPECT_TRUE(sample.isInPlace());
    }
}

TEST(IsotropicFilmEtchingTest, FlatFilmLosesExactlyTenLayersToAnyNumberOfStrips)
{
    // A column of a strip needs nothing of its neighbors, and nothing of theirs is nearer.
    const Case given = flatFilm({17, 6, 16}, 10.0f, 3);
    const Rule rule = ruleOf(given, stripsOf(given.grid, 1));
    for (const int threads : {2, 3, 4, 8}) {
        Sample sample(given);
        sample.run(threads);
        EXPECT_TRUE(agree(given, sample.voxels(), rule.voxels(), hasSameMaterialAndFront));
        EXPECT_TRUE(agree(given, sample.nextVoxels(), rule.nextVoxels(), hasSameMaterial));
    }
}

TEST(IsotropicFilmEtchingTest, HoleThatKeepsOffTheBordersOfStripsIsThatOfOneStrip)
{
    // Rooms of nine layers, as the strips are; the last cells that a depth of three removes are one
    // layer away from their ends.
    for (const int threads : {2, 3, 4}) {
        const Grid grid = {std::uint32_t(9 * threads), 8, 9};
        for (const float depth : {1.0f, 2.5f, 3.0f}) {
            const Case given = caseOf(grid, etching(depth), holes(9));
            const Rule rule = ruleOf(given, stripsOf(grid, 1));
            Sample sample(given);
            sample.run(threads);
            EXPECT_TRUE(agree(given, sample.voxels(), rule.voxels(), hasSameMaterialAndFront));
            EXPECT_TRUE(agree(given, sample.nextVoxels(), rule.nextVoxels(), hasSameMaterial));
        }
    }
}

TEST(IsotropicFilmEtchingTest, CellsThatNoNewsOfAStripBorderReachAreThoseOfOneStrip)
{
    // Two units take three steps, so each strip of ten layers has four of them at least.
    for (const int threads : {2, 3, 4}) {
        const Grid grid = {std::uint32_t(10 * threads), 6, 7};
        for (std::uint32_t seed = 1; seed <= 4; ++seed) {
            SCOPED_TRACE(testing::Message() << "seed " << seed << ", " << threads << " threads");
            const Case given = {grid, randomMaterials(grid, seed, 96), etching(2.0f)};
            const Guarantees guarantees(given, threads);
            const Rule rule = ruleOf(given, stripsOf(grid, 1));
            Sample sample(given);
            sample.run(threads);
            int compared = 0;
            for (int cell = 0; cell < int(grid.cells()); ++cell) {
                if (guarantees.isBeyondNews(cell)) {
                    ++compared;
                    EXPECT_TRUE(
                        hasSameMaterialAndFront(sample.voxels()[cell], rule.voxels()[cell]));
                }
            }
            EXPECT_GE(compared, 4 * threads * 6 * 7);
        }
    }
}

TEST(IsotropicFilmEtchingTest, StripsKeepWithinTheDepthOnShapes)
{
    for (const int threads : {2, 3, 4}) {
        for (const float depth : {1.0f, 2.5f, 4.0f}) {
            const Process process = etching(depth);
            expectGuarantees(caseOf({14, 4, 14}, process, trench()), threads);
            expectGuarantees(caseOf({13, 10, 12}, process, trenchAcrossStrips()), threads);
            expectGuarantees(caseOf({11, 11, 11}, process, bubble(5, 2)), threads);
            expectGuarantees(caseOf({12, 8, 9}, process, maskedFilm()), threads);
            expectGuarantees(caseOf({12, 12, 10}, process, thinWalls()), threads);
            expectGuarantees(caseOf({17, 8, 8}, process, blockAlongX(3)), threads);
        }
    }
}

TEST(IsotropicFilmEtchingTest, StripsKeepWithinTheDepthOnRandomVolumes)
{
    for (std::uint32_t seed = 1; seed <= 12; ++seed) {
        SCOPED_TRACE(testing::Message() << "seed " << seed);
        const Grid grid = {8 + seed, 7, seed % 3 == 0 ? 66U : 9U, 1.0f, 0.5f, 1.0f};
        const Materials materials = randomMaterials(grid, seed, seed % 2 == 0 ? 98 : 85);
        for (const int threads : {2, 3, 4})
            expectGuarantees({grid, materials, etching(2.5f)}, threads);
    }
}

TEST(IsotropicFilmEtchingTest, NarrowestStripsKeepWithinTheDepth)
{
    // Every layer of a strip is next to another strip.
    for (const int threads : {2, 3, 4}) {
        const Grid grid = {std::uint32_t(2 * threads), 12, 12};
        for (std::uint32_t seed = 1; seed <= 4; ++seed) {
            SCOPED_TRACE(testing::Message() << "seed " << seed);
            expectGuarantees({grid, randomMaterials(grid, seed, 97), etching(3.0f)}, threads);
        }
        expectGuarantees(flatFilm(grid, 5.0f, 2), threads);
    }
}
