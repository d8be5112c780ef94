#include "Model/ModelExtraction/CuboidDecomposer.h"

#include "CuboidDecomposerRule.h"

#include "Model/Automaton/TotalVolume.h"
#include "Model/ModelExtraction/RectangularCuboidEnvelope.h"
#include "Support/Volumes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <map>
#include <random>
#include <vector>

using CuboidDecomposerRule::Box;
using CuboidDecomposerRule::Boxes;
using CuboidDecomposerRule::Materials;
using Model::Automaton::Voxel;
using Model::ModelExtraction::CuboidDecomposer;
using Model::ModelExtraction::EnvelopeList;
using Model::ModelExtraction::RectangularCuboidEnvelope;
using Support::Grid;

namespace {

/// The neighbours are told by their places in the list, which must hold them.
Boxes boxesOf(const EnvelopeList &envelopes)
{
    std::map<const RectangularCuboidEnvelope *, int> places;
    places[nullptr] = CuboidDecomposerRule::none;
    for (const auto &envelope : envelopes) {
        const int place = int(places.size()) - 1;
        places[envelope.get()] = place;
    }
    EXPECT_EQ(places.size(), envelopes.size() + 1);
    Boxes boxes;
    for (const auto &envelope : envelopes) {
        Box box{envelope->x(),     envelope->y(),      envelope->z(),       envelope->width(),
                envelope->depth(), envelope->height(), envelope->material()};
        std::uint32_t count = 0;
        for (unsigned face = 0; face < 6; ++face) {
            const RectangularCuboidEnvelope *const neighbour = envelope->neighbour(face);
            EXPECT_EQ(places.count(neighbour), 1U);
            box.neighbours[face] = places[neighbour];
            count += neighbour ? 1 : 0;
        }
        EXPECT_EQ(envelope->neighbourCount(), count);
        boxes.push_back(box);
    }
    return boxes;
}

/// The working array holds another material in each cell, which nobody may take for the volume's.
Boxes decomposed(const Grid &grid, const Materials &materials)
{
    const auto volume = Support::makeVolume(grid, materials);
    Voxel *const working = volume->nextVoxels();
    for (std::size_t i = 0; i < materials.size(); ++i)
        working[i].setMaterial(std::uint32_t(100 + i));
    volume->releaseNextVoxels();
    CuboidDecomposer decomposer(volume.get());
    EXPECT_TRUE(decomposer.envelopes().empty());
    decomposer.run();
    EXPECT_EQ(Support::materialsOf(*volume), materials);
    return boxesOf(decomposer.envelopes());
}

Boxes decomposed(const Grid &grid, const Support::MaterialRule &rule)
{
    return decomposed(grid, Support::materialsBy(grid, rule));
}

void expectRule(const Grid &grid, const Materials &materials)
{
    EXPECT_EQ(decomposed(grid, materials), CuboidDecomposerRule::decomposed(grid, materials))
        << grid.sizeX << " x " << grid.sizeY << " x " << grid.sizeZ;
}

/// Every filled cell lies in exactly one box, which has its material, and no empty cell in any.
void expectTiles(const Grid &grid, const Materials &materials)
{
    Materials tiled(materials.size(), 0);
    for (const Box &box : decomposed(grid, materials))
        for (int x = box.x; x < box.x + box.width; ++x)
            for (int y = box.y; y < box.y + box.depth; ++y)
                for (int z = box.z; z < box.z + box.height; ++z) {
                    std::uint32_t &cell =
                        tiled[grid.index(std::uint32_t(x), std::uint32_t(y), std::uint32_t(z))];
                    EXPECT_EQ(cell, 0U) << x << ", " << y << ", " << z << " lies in two boxes";
                    cell = std::uint32_t(box.material);
                }
    EXPECT_EQ(tiled, materials);
}

Materials boxUnion(const Grid &grid, std::mt19937 &random, unsigned boxes, std::uint32_t margin)
{
    Materials materials(grid.cells(), 0);
    const std::uint32_t limits[] = {grid.sizeX - margin, grid.sizeY - margin, grid.sizeZ - margin};
    for (unsigned i = 0; i < boxes; ++i) {
        std::uint32_t low[3];
        std::uint32_t high[3];
        for (unsigned axis = 0; axis < 3; ++axis) {
            low[axis] = random() % limits[axis];
            high[axis] = low[axis] + 1 + random() % (limits[axis] - low[axis]);
        }
        const std::uint32_t material = random() % 4;
        for (std::uint32_t x = low[0]; x < high[0]; ++x)
            for (std::uint32_t y = low[1]; y < high[1]; ++y)
                for (std::uint32_t z = low[2]; z < high[2]; ++z)
                    materials[grid.index(x, y, z)] = material;
    }
    return materials;
}

TEST(CuboidDecomposerTest, EmptyVolumeYieldsNoEnvelope)
{
    for (const Grid &grid : {Grid{1, 1, 1}, Grid{4, 3, 5}, Grid{1, 7, 2}})
        EXPECT_EQ(decomposed(grid, Materials(grid.cells(), 0)), Boxes());
}

TEST(CuboidDecomposerTest, VolumeOfOneMaterialYieldsOneEnvelopeWithoutNeighbours)
{
    for (const Grid &grid : {Grid{1, 1, 1}, Grid{4, 3, 5}, Grid{1, 7, 2}, Grid{70, 66, 68}})
        EXPECT_EQ(decomposed(grid, Materials(grid.cells(), 5)),
                  (Boxes{{0, 0, 0, int(grid.sizeX), int(grid.sizeY), int(grid.sizeZ), 5}}));
}

TEST(CuboidDecomposerTest, VolumeWithoutCellsHasNoBoxes)
{
    for (const Grid &grid : {Grid{0, 3, 5}, Grid{4, 0, 5}, Grid{4, 3, 0}, Grid{0, 0, 0},
                             Grid{4294967295, 0, 4294967295}})
        EXPECT_EQ(decomposed(grid, Materials()), Boxes());
}

TEST(CuboidDecomposerTest, SeedsComeOffTheStackWithThatAlongZFirst)
{
    // A cut through the middle of each axis: eight boxes of different materials.
    const Grid grid{4, 4, 4};
    const Boxes boxes = decomposed(grid, [](std::uint32_t x, std::uint32_t y, std::uint32_t z) {
        return 1 + 4 * (x / 2) + 2 * (y / 2) + z / 2;
    });
    std::vector<int> materials;
    for (const Box &box : boxes)
        materials.push_back(box.material);
    // The first seed leaves the corners behind it along x (5), y (3) and z (2) on the stack. The
    // one along z finds 6 and 4 above those; 4 finds 8; the one along y finds 7.
    EXPECT_EQ(materials, (std::vector<int>{1, 2, 4, 8, 6, 3, 7, 5}));
    EXPECT_EQ(boxes, CuboidDecomposerRule::decomposed(
                         grid, Support::materialsBy(grid, [](auto x, auto y, auto z) {
                             return 1 + 4 * (x / 2) + 2 * (y / 2) + z / 2;
                         })));
}

TEST(CuboidDecomposerTest, NeighboursStandOnOppositeFaces)
{
    const Grid grid{4, 4, 4};
    const Boxes alongX =
        decomposed(grid, [](std::uint32_t x, auto, auto) { return x < 1 ? 1U : 2U; });
    EXPECT_EQ(alongX, (Boxes{{0, 0, 0, 1, 4, 4, 1, {-1, 1, -1, -1, -1, -1}},
                             {1, 0, 0, 3, 4, 4, 2, {0, -1, -1, -1, -1, -1}}}));
    const Boxes alongY =
        decomposed(grid, [](auto, std::uint32_t y, auto) { return y < 1 ? 1U : 2U; });
    EXPECT_EQ(alongY, (Boxes{{0, 0, 0, 4, 1, 4, 1, {-1, -1, -1, 1, -1, -1}},
                             {0, 1, 0, 4, 3, 4, 2, {-1, -1, 0, -1, -1, -1}}}));
    const Boxes alongZ =
        decomposed(grid, [](auto, auto, std::uint32_t z) { return z < 1 ? 1U : 2U; });
    EXPECT_EQ(alongZ, (Boxes{{0, 0, 0, 4, 4, 1, 1, {-1, -1, -1, -1, -1, 1}},
                             {0, 0, 1, 4, 4, 3, 2, {-1, -1, -1, -1, 0, -1}}}));
}

TEST(CuboidDecomposerTest, CuboidsThatTouchOverPartOfAFaceAreNotNeighbours)
{
    // A narrow bar ends at a broad block. The block is cut where the bar's sides would go on, and
    // only the piece behind the bar is its neighbour.
    const Grid grid{9, 9, 9};
    const auto rule = [](std::uint32_t x, std::uint32_t y, std::uint32_t z) {
        if (y == 0 || y > 6 || z == 0 || z > 6 || x > 7)
            return 0U;
        if (x < 3)
            return 1U;
        return y >= 3 && y < 5 && z >= 3 && z < 5 ? 2U : 0U;
    };
    const Boxes boxes = decomposed(grid, rule);
    ASSERT_EQ(boxes.size(), 10U);
    for (const Box &box : boxes)
        if (box.material == 2) {
            EXPECT_EQ(box.width, 5);
            EXPECT_EQ(std::count(box.neighbours.begin(), box.neighbours.end(), -1), 5);
            ASSERT_NE(box.neighbours[0], -1);
            const Box &behind = boxes[std::size_t(box.neighbours[0])];
            EXPECT_EQ(behind.y, 3);
            EXPECT_EQ(behind.z, 3);
            EXPECT_EQ(behind.depth, 2);
            EXPECT_EQ(behind.height, 2);
        } else if (box.neighbours[1] != -1) {
            EXPECT_EQ(box.y, 3);
            EXPECT_EQ(box.z, 3);
        }
    expectRule(grid, Support::materialsBy(grid, rule));
}

TEST(CuboidDecomposerTest, CuboidsThatTouchAtAnEdgeOrACornerAreNotNeighbours)
{
    const Grid grid{5, 5, 5};
    for (const Box &box : decomposed(grid, [](auto x, auto y, auto z) {
             return (x < 2 && y < 2 && z < 2) || (x >= 2 && y >= 2 && z < 2) ? 1U : 0U;
         }))
        EXPECT_EQ(box.neighbours, Box{}.neighbours);
    for (const Box &box : decomposed(grid, [](auto x, auto y, auto z) {
             return (x < 2 && y < 2 && z < 2) || (x >= 2 && y >= 2 && z >= 2) ? 1U : 0U;
         }))
        EXPECT_EQ(box.neighbours, Box{}.neighbours);
}

TEST(CuboidDecomposerTest, EmptySpaceSeparatesBoxesAndIsNone)
{
    const Grid grid{7, 3, 3};
    EXPECT_EQ(
        decomposed(grid, [](std::uint32_t x, auto, auto) { return x >= 2 && x < 5 ? 0U : 4U; }),
        (Boxes{{0, 0, 0, 2, 3, 3, 4}, {5, 0, 0, 2, 3, 3, 4}}));
}

TEST(CuboidDecomposerTest, VolumeThatIsOneLayerThickIsNotCut)
{
    // Its one layer is the last one along that axis, whose cells are not asked.
    const Grid grids[] = {{1, 6, 5}, {6, 1, 5}, {6, 5, 1}, {1, 1, 9}, {1, 9, 1}, {9, 1, 1}};
    for (const Grid &grid : grids) {
        std::uint32_t next = 3;
        const Materials rising =
            Support::materialsBy(grid, [&](auto, auto, auto) { return next++; });
        EXPECT_EQ(decomposed(grid, rising),
                  (Boxes{{0, 0, 0, int(grid.sizeX), int(grid.sizeY), int(grid.sizeZ), 3}}));
        Materials firstEmpty = rising;
        firstEmpty.front() = 0;
        EXPECT_EQ(decomposed(grid, firstEmpty), Boxes());
    }
}

TEST(CuboidDecomposerTest, LastLayerIsComparedWithTheOneBelowAndNotWithinItself)
{
    // A cell that stands out in the last layer of z alone: the cut under it is found, those along
    // its sides are not, and the whole layer is taken for what its first cell is.
    const Grid grid{5, 5, 5};
    EXPECT_EQ(
        decomposed(grid, [](std::uint32_t x, std::uint32_t y,
                            std::uint32_t z) { return x == 2 && y == 2 && z == 4 ? 2U : 1U; }),
        (Boxes{{0, 0, 0, 5, 5, 4, 1, {-1, -1, -1, -1, -1, 1}},
               {0, 0, 4, 5, 5, 1, 1, {-1, -1, -1, -1, 0, -1}}}));
    // In the last layers of x and z at once it is not seen at all.
    EXPECT_EQ(
        decomposed(grid, [](std::uint32_t x, std::uint32_t y,
                            std::uint32_t z) { return x == 4 && y == 2 && z == 4 ? 2U : 1U; }),
        (Boxes{{0, 0, 0, 5, 5, 5, 1}}));
}

TEST(CuboidDecomposerTest, CutsGoThroughTheWholeVolume)
{
    // A block in one corner cuts the block in the other.
    const Grid grid{8, 8, 8};
    const auto rule = [](std::uint32_t x, std::uint32_t y, std::uint32_t z) {
        if (x < 5 && y < 2 && z < 2)
            return 1U;
        return x >= 3 && x < 7 && y >= 4 && y < 6 && z >= 4 && z < 6 ? 2U : 0U;
    };
    const Boxes boxes = decomposed(grid, rule);
    ASSERT_EQ(boxes.size(), 4U);
    for (const Box &box : boxes)
        EXPECT_EQ(box.width, box.x == 0 ? 3 : 2);
    expectTiles(grid, Support::materialsBy(grid, rule));
}

TEST(CuboidDecomposerTest, NewRunReplacesTheListOfTheLast)
{
    const auto volume =
        Support::makeVolume({5, 4, 3}, [](std::uint32_t x, auto, auto) { return x < 2 ? 1U : 2U; });
    CuboidDecomposer decomposer(volume.get());
    decomposer.run();
    const Boxes first = boxesOf(decomposer.envelopes());
    EXPECT_EQ(first.size(), 2U);
    decomposer.run();
    EXPECT_EQ(boxesOf(decomposer.envelopes()), first);
}

TEST(CuboidDecomposerTest, LargeIdsKeepTheirBits)
{
    const Grid grid{3, 3, 3};
    EXPECT_EQ(decomposed(grid, Materials(27, 4294967295)), (Boxes{{0, 0, 0, 3, 3, 3, -1}}));
    EXPECT_EQ(decomposed(grid, Materials(27, 2147483647)), (Boxes{{0, 0, 0, 3, 3, 3, 2147483647}}));
}

TEST(CuboidDecomposerTest, BoxesTileUnionsOfBoxesBelowTheLastLayers)
{
    for (std::uint32_t seed = 1; seed <= 150; ++seed) {
        SCOPED_TRACE(testing::Message() << "seed " << seed);
        std::mt19937 random(seed);
        const auto size = [&] { return 2 + std::uint32_t(random() % 9); };
        const Grid grid{size(), size(), size()};
        const Materials materials = boxUnion(grid, random, 1 + random() % 5, 1);
        expectTiles(grid, materials);
        expectRule(grid, materials);
    }
}

TEST(CuboidDecomposerTest, UnionsOfBoxesFollowTheRuleUpToTheLastLayers)
{
    for (std::uint32_t seed = 1; seed <= 150; ++seed) {
        SCOPED_TRACE(testing::Message() << "seed " << seed);
        std::mt19937 random(seed);
        const auto size = [&] { return 1 + std::uint32_t(random() % 9); };
        const Grid grid{size(), size(), size()};
        expectRule(grid, boxUnion(grid, random, 1 + random() % 4, 0));
    }
}

TEST(CuboidDecomposerTest, RandomVolumesFollowTheRule)
{
    for (std::uint32_t seed = 1; seed <= 200; ++seed) {
        SCOPED_TRACE(testing::Message() << "seed " << seed);
        std::mt19937 random(seed);
        const auto size = [&] { return 1 + std::uint32_t(random() % 7); };
        const Grid grid{size(), size(), size()};
        // From a few cells that stand out to nothing but noise.
        const std::uint32_t noise = std::vector<std::uint32_t>{1, 5, 30, 100}[random() % 4];
        const std::uint32_t ground = random() % 3;
        expectRule(grid, Support::materialsBy(grid, [&](auto, auto, auto) -> std::uint32_t {
                       return random() % 100 < noise ? random() % 4 : ground;
                   }));
    }
}

TEST(CuboidDecomposerTest, EveryVolumeOfTwelveCellsFollowsTheRule)
{
    for (const Grid &grid : {Grid{3, 2, 2}, Grid{2, 3, 2}, Grid{2, 2, 3}})
        for (std::uint32_t bits = 0; bits < 4096; ++bits) {
            Materials materials;
            for (unsigned i = 0; i < 12; ++i)
                materials.push_back(bits >> i & 1U);
            ASSERT_EQ(decomposed(grid, materials),
                      CuboidDecomposerRule::decomposed(grid, materials))
                << "bits " << bits;
        }
}

TEST(CuboidDecomposerTest, LargeVolumeOfBlocksFollowsTheRule)
{
    for (std::uint32_t seed = 1; seed <= 3; ++seed) {
        SCOPED_TRACE(testing::Message() << "seed " << seed);
        std::mt19937 random(seed);
        const Grid grid{70, 66, 68};
        expectRule(grid, boxUnion(grid, random, 3, seed % 2));
    }
}

} // namespace
