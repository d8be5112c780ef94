#include "Model/Automaton/MarchingCubeSurface.h"

#include "MarchingCubeRule.h"
#include "Model/Automaton/MarchingCubeTables.h"
#include "Model/Automaton/TotalVolume.h"
#include "Model/Materials/MaterialFactory.h"
#include "Support/Volumes.h"
#include "Util/Vector3D.h"

#include <QString>

#include <boost/shared_ptr.hpp>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <limits>
#include <map>
#include <random>
#include <set>
#include <string>
#include <utility>
#include <vector>

using MarchingCubeRule::agree;
using MarchingCubeRule::Ids;
using Model::Automaton::CellTriple;
using Model::Automaton::MarchingCubeSurface;
using Model::Automaton::MarchingCubeTables;
using Model::Automaton::TotalVolume;
using Model::Automaton::Triangle;
using Model::Automaton::TriangleList;
using Model::Materials::Material;
using Model::Materials::MaterialFactory;
using Support::Grid;
using Support::makeVolume;
using Support::materialsBy;
using Support::PoolThreads;

namespace {

constexpr std::uint32_t Red = 70;
constexpr std::uint32_t Blue = 71;
constexpr std::uint32_t Glass = 72;
constexpr std::uint32_t Clear = 73;
constexpr std::uint32_t Unknown = 4000000000U;

const std::array<int, 4> threadCounts = {1, 2, 3, 5};

class MarchingCubeSurfaceTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        setMaterial(Red, {0.9f, 0.1f, 0.2f, 1.0f});
        setMaterial(Blue, {0.1f, 0.2f, 0.9f, 1.0f});
        setMaterial(Glass, {0.3f, 0.6f, 0.9f, 0.5f});
        setMaterial(Clear, {0.8f, 0.8f, 0.2f, 0.0f});
    }
    void TearDown() override { m_registry->loadDefaultMaterials(); }

    void setMaterial(std::uint32_t id, const std::array<float, 4> &color)
    {
        ASSERT_TRUE(m_registry->updateMaterial(
            Material(id, QStringLiteral("Test"), 1.0f, 1.0f, 1.0f, color.data())));
    }

    boost::shared_ptr<MaterialFactory> m_registry = MaterialFactory::instance();
};

/// Compares the skin of a volume with the rule for every number of threads.
void expectRule(TotalVolume &volume, const Grid &grid, const Ids &ids, const CellTriple &lower,
                const CellTriple &upper)
{
    MarchingCubeSurface surface(&volume);
    for (const int threads : threadCounts) {
        const PoolThreads pool(threads);
        surface.rebuild(lower, upper);
        EXPECT_TRUE(agree(surface.triangles(),
                          MarchingCubeRule::surface(grid, ids, lower, upper,
                                                    static_cast<std::uint32_t>(threads))))
            << "with " << threads << " threads";
    }
}

CellTriple sizesOf(const Grid &grid)
{
    return {grid.sizeX, grid.sizeY, grid.sizeZ};
}

/// Positions in halves of a cell, for cells of edge 1.
using HalfPoint = std::array<int, 3>;

HalfPoint halves(const float *position)
{
    HalfPoint point{};
    for (unsigned axis = 0; axis < 3; ++axis)
        point[axis] = static_cast<int>(std::lround(position[axis] * 2));
    return point;
}

/// True if every side of a triangle has one in the opposite direction for itself.
bool isClosed(const TriangleList &triangles)
{
    std::map<std::pair<HalfPoint, HalfPoint>, int> balance;
    for (const Triangle &triangle : triangles)
        for (unsigned i = 0; i < 3; ++i) {
            const HalfPoint from = halves(triangle.vertices[i].position);
            const HalfPoint to = halves(triangle.vertices[(i + 1) % 3].position);
            ++balance[{from, to}];
            --balance[{to, from}];
        }
    return std::all_of(balance.begin(), balance.end(),
                       [](const auto &side) { return side.second == 0; });
}

/// Six times what the skin encloses, by the signed tetrahedra below its triangles, in eighths of a
/// cell; positive if the triangles are counter-clockwise seen from outside.
long enclosed(const TriangleList &triangles)
{
    long sum = 0;
    for (const Triangle &triangle : triangles) {
        const HalfPoint a = halves(triangle.vertices[0].position);
        const HalfPoint b = halves(triangle.vertices[1].position);
        const HalfPoint c = halves(triangle.vertices[2].position);
        sum += a[0] * (b[1] * c[2] - b[2] * c[1]) + a[1] * (b[2] * c[0] - b[0] * c[2]) +
               a[2] * (b[0] * c[1] - b[1] * c[0]);
    }
    return sum;
}

struct Box
{
    HalfPoint lower;
    HalfPoint upper;
};

Box boxOf(const TriangleList &triangles)
{
    constexpr int Far = std::numeric_limits<int>::max();
    Box box{{Far, Far, Far}, {-Far, -Far, -Far}};
    for (const Triangle &triangle : triangles)
        for (const Triangle::Vertex &vertex : triangle.vertices)
            for (unsigned axis = 0; axis < 3; ++axis) {
                const int at = halves(vertex.position)[axis];
                box.lower[axis] = std::min(box.lower[axis], at);
                box.upper[axis] = std::max(box.upper[axis], at);
            }
    return box;
}

TEST_F(MarchingCubeSurfaceTest, CornersAndEdgesAreThoseOfThePublishedCube)
{
    for (unsigned i = 0; i < 8; ++i)
        for (unsigned axis = 0; axis < 3; ++axis)
            EXPECT_EQ(MarchingCubeTables::corners[i][axis], MarchingCubeRule::corners[i][axis])
                << "corner " << i;
    for (unsigned i = 0; i < 12; ++i)
        for (unsigned end = 0; end < 2; ++end)
            EXPECT_EQ(MarchingCubeTables::edgeCorners[i][end],
                      MarchingCubeRule::edgeCorners[i][end])
                << "edge " << i;
}

TEST_F(MarchingCubeSurfaceTest, EdgeTableIsThePublishedOne)
{
    for (unsigned index = 0; index < 256; ++index) {
        EXPECT_EQ(MarchingCubeTables::edges[index], MarchingCubeRule::edgeTable[index])
            << "case " << index;
        unsigned crossed = 0;
        for (unsigned edge = 0; edge < 12; ++edge) {
            const auto &ends = MarchingCubeRule::edgeCorners[edge];
            if (((index >> ends[0]) & 1U) != ((index >> ends[1]) & 1U))
                crossed |= 1U << edge;
        }
        EXPECT_EQ(MarchingCubeTables::edges[index], crossed) << "case " << index;
    }
}

TEST_F(MarchingCubeSurfaceTest, TriangleTableIsThePublishedOne)
{
    ASSERT_EQ(MarchingCubeRule::triangleTable.size(), 256u);
    for (unsigned index = 0; index < 256; ++index) {
        std::vector<int> row;
        for (const std::int8_t edge : MarchingCubeTables::triangles[index]) {
            if (edge == -1)
                break;
            row.push_back(edge);
        }
        EXPECT_EQ(row, MarchingCubeRule::triangleTable[index]) << "case " << index;
        EXPECT_LE(row.size(), 15u) << "case " << index;
    }
}

TEST_F(MarchingCubeSurfaceTest, RandomVolumesHaveTheSkinOfTheRuleWithAnyNumberOfThreads)
{
    // Some of them divide each other up to a rounding error, on which the groups depend.
    const std::array<float, 6> cellSizes = {1.0f, 0.35f, 2.0f, 1.05f, 0.7f, 0.1f};
    const Ids palette = {Red, Blue, Glass, Clear, Unknown};
    std::size_t skins = 0;
    for (unsigned seed = 1; seed <= 240; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        std::mt19937 random(seed);
        Grid grid;
        grid.sizeX = 1 + random() % 9;
        grid.sizeY = 1 + random() % 7;
        grid.sizeZ = 1 + random() % 6;
        grid.cellSizeX = cellSizes[random() % 6];
        grid.cellSizeY = cellSizes[random() % 6];
        grid.cellSizeZ = cellSizes[random() % 6];

        const std::size_t kinds = 2 + random() % 4;
        const unsigned fill = 1 + random() % 9;
        const Ids ids = materialsBy(grid, [&](std::uint32_t, std::uint32_t, std::uint32_t) {
            return random() % 10 < fill ? palette[random() % kinds] : 0U;
        });

        const CellTriple sizes = sizesOf(grid);
        CellTriple lower{};
        CellTriple upper = sizes;
        for (unsigned axis = 0; axis < 3; ++axis) {
            switch (random() % 8) {
            case 0:
            case 1:
            case 2:
                lower[axis] = random() % sizes[axis];
                upper[axis] = lower[axis] + 1 + random() % (sizes[axis] - lower[axis]);
                break;
            case 3:
                if (random() % 4 == 0)
                    lower[axis] = upper[axis] = random() % (sizes[axis] + 1);
                break;
            case 4:
                upper[axis] = sizes[axis] + random() % 9;
                break;
            case 5:
                upper[axis] = sizes[axis] - 1;
                break;
            default:
                break;
            }
        }

        const Util::Vector3D position(static_cast<double>(random() % 9) - 4.5,
                                      static_cast<double>(random() % 7) * 11, -3.25);
        TotalVolume volume(grid.sizeX, grid.sizeY, grid.sizeZ, grid.cellSizeX, grid.cellSizeY,
                           grid.cellSizeZ, position, ids);
        expectRule(volume, grid, ids, lower, upper);
        if (!MarchingCubeRule::surface(grid, ids, lower, upper, 1).empty())
            ++skins;
    }
    EXPECT_GT(skins, 60u) << "too few of the volumes show anything";
}

TEST_F(MarchingCubeSurfaceTest, LargeVolumeOfAFewBlocksHasTheSkinOfTheRule)
{
    Grid grid;
    grid.sizeX = 70;
    grid.sizeY = 66;
    grid.sizeZ = 68;
    grid.cellSizeX = 0.35f;
    grid.cellSizeZ = 2.0f;
    const Ids ids = materialsBy(grid, [](std::uint32_t x, std::uint32_t y, std::uint32_t z) {
        if (x >= 60 && y >= 62 && z >= 61)
            return Glass;
        if (x < 40 && y > 5 && z >= 30 && z < 66 && (x + y + z) % 64 != 0)
            return Red;
        return z == 63 || z == 64 || (x == 63 && y == 64) ? Blue : 0U;
    });
    const auto volume = makeVolume(grid, ids);
    expectRule(*volume, grid, ids, {0, 0, 0}, sizesOf(grid));
    expectRule(*volume, grid, ids, {1, 63, 2}, {69, 65, 65});
}

TEST_F(MarchingCubeSurfaceTest, FullVolumeShowsAClosedSkinOneCellInFromTheLowSides)
{
    Grid grid;
    grid.sizeX = 5;
    grid.sizeY = 4;
    grid.sizeZ = 3;
    const Ids ids(grid.cells(), Red);
    const auto volume = makeVolume(grid, ids);
    MarchingCubeSurface surface(volume.get());
    surface.rebuild({0, 0, 0}, sizesOf(grid));

    // Between cell 0, void, and cell 1; and between the last cell and the one behind it.
    const Box box = boxOf(surface.triangles());
    EXPECT_EQ(box.lower, (HalfPoint{1, 1, 1}));
    EXPECT_EQ(box.upper, (HalfPoint{9, 7, 5}));
    EXPECT_TRUE(isClosed(surface.triangles()));
    EXPECT_GT(enclosed(surface.triangles()), 0);
    // Filled are 4 x 3 x 2 corners. A wall of a x b corners has (a - 1)(b - 1) squares and an edge
    // of n corners n - 1 bevels, of two triangles each; a corner is one triangle.
    const std::size_t walls = 2 * (3 * 2 + 3 * 1 + 2 * 1);
    const std::size_t bevels = 4 * (3 + 2 + 1);
    EXPECT_EQ(surface.triangles().size(), 2 * walls + 2 * bevels + 8);
    expectRule(*volume, grid, ids, {0, 0, 0}, sizesOf(grid));
}

TEST_F(MarchingCubeSurfaceTest, SkinOfScatteredCellsHasNoHoles)
{
    for (unsigned seed = 1; seed <= 20; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        std::mt19937 random(seed);
        Grid grid;
        grid.sizeX = 8;
        grid.sizeY = 7;
        grid.sizeZ = 9;
        const Ids ids = materialsBy(grid, [&](std::uint32_t, std::uint32_t, std::uint32_t) {
            return random() % 2 == 0 ? Red : 0U;
        });
        const auto volume = makeVolume(grid, ids);
        MarchingCubeSurface surface(volume.get());
        surface.rebuild({0, 1, 0}, {8, 5, 9});
        EXPECT_FALSE(surface.triangles().empty());
        EXPECT_TRUE(isClosed(surface.triangles()));
        EXPECT_GT(enclosed(surface.triangles()), 0);
    }
}

TEST_F(MarchingCubeSurfaceTest, TouchingMaterialsShowNoInterfaceAndEachColorsItsOwnSkin)
{
    Grid grid;
    grid.sizeX = 8;
    grid.sizeY = 6;
    grid.sizeZ = 6;
    const auto isInside = [](std::uint32_t c) { return c >= 2 && c <= 4; };
    const auto fill = [&](std::uint32_t left, std::uint32_t right) {
        return materialsBy(grid,
                           [&, left, right](std::uint32_t x, std::uint32_t y, std::uint32_t z) {
                               if (x < 2 || x > 6 || !isInside(y) || !isInside(z))
                                   return 0U;
                               return x < 4 ? left : right;
                           });
    };
    const auto plain = makeVolume(grid, fill(Red, Red));
    const auto mixed = makeVolume(grid, fill(Red, Blue));
    MarchingCubeSurface plainSurface(plain.get());
    MarchingCubeSurface mixedSurface(mixed.get());
    plainSurface.rebuild({0, 0, 0}, sizesOf(grid));
    mixedSurface.rebuild({0, 0, 0}, sizesOf(grid));

    ASSERT_FALSE(plainSurface.triangles().empty());
    ASSERT_EQ(mixedSurface.triangles().size(), plainSurface.triangles().size());
    std::set<std::uint32_t> materials;
    for (std::size_t i = 0; i < mixedSurface.triangles().size(); ++i)
        for (unsigned corner = 0; corner < 3; ++corner) {
            const Triangle::Vertex &vertex = mixedSurface.triangles()[i].vertices[corner];
            const Triangle::Vertex &other = plainSurface.triangles()[i].vertices[corner];
            EXPECT_EQ(halves(vertex.position), halves(other.position));
            // Cells 2 and 3 are red, so what lies at 3 or before hangs on a red cell.
            EXPECT_EQ(vertex.material, vertex.position[0] <= 3.0f ? Red : Blue)
                << "at x = " << vertex.position[0];
            materials.insert(vertex.material);
        }
    EXPECT_EQ(materials, (std::set<std::uint32_t>{Red, Blue}));
}

TEST_F(MarchingCubeSurfaceTest, SingleCellGivesASmallOctahedron)
{
    Grid grid;
    grid.sizeX = 6;
    grid.sizeY = 5;
    grid.sizeZ = 7;
    Ids ids(grid.cells(), 0);
    ids[grid.index(2, 3, 4)] = Blue;
    const auto volume = makeVolume(grid, ids);
    MarchingCubeSurface surface(volume.get());
    surface.rebuild({0, 0, 0}, sizesOf(grid));

    ASSERT_EQ(surface.triangles().size(), 8u);
    std::set<HalfPoint> tips;
    for (const Triangle &triangle : surface.triangles())
        for (const Triangle::Vertex &vertex : triangle.vertices) {
            tips.insert(halves(vertex.position));
            EXPECT_EQ(vertex.material, Blue);
            EXPECT_EQ(vertex.shared, 0u);
        }
    EXPECT_EQ(tips, (std::set<HalfPoint>{
                        {3, 6, 8}, {5, 6, 8}, {4, 5, 8}, {4, 7, 8}, {4, 6, 7}, {4, 6, 9}}));
    EXPECT_TRUE(isClosed(surface.triangles()));
    // An octahedron of half axes 1: 4/3, six times in eighths of a cell.
    EXPECT_EQ(enclosed(surface.triangles()), 8);
}

TEST_F(MarchingCubeSurfaceTest, LowerTipsOfASingleCellShareANormalAndTheUpperOnesHaveTheirOwn)
{
    Grid grid;
    grid.sizeX = grid.sizeY = grid.sizeZ = 5;
    Ids ids(grid.cells(), 0);
    ids[grid.index(2, 2, 2)] = Blue;
    const auto volume = makeVolume(grid, ids);
    MarchingCubeSurface surface(volume.get());
    surface.rebuild({0, 0, 0}, sizesOf(grid));

    // Halves round upward: 1.5 falls to the cell's own number and 2.5 to the next. The four normals
    // at a tip add up to 4 / sqrt(3) along its axis. An upper tip: divided by 4 - 1 and by its own
    // square. The three lower ones: twelve normals, so by 12 - 1.
    const double upper = 3 * std::sqrt(3.0) / 4;
    const double lower = -11 / (4 * std::sqrt(3.0));
    ASSERT_EQ(surface.triangles().size(), 8u);
    for (const Triangle &triangle : surface.triangles())
        for (const Triangle::Vertex &vertex : triangle.vertices) {
            const HalfPoint at = halves(vertex.position);
            for (unsigned axis = 0; axis < 3; ++axis) {
                const bool isLower = at[0] == 3 || at[1] == 3 || at[2] == 3;
                const double expected = isLower ? lower : at[axis] == 5 ? upper : 0.0;
                EXPECT_NEAR(vertex.normal[axis], expected, 1e-5);
            }
        }
}

TEST_F(MarchingCubeSurfaceTest, GroupsAlongZAreFormedByTheCellSizeAlongY)
{
    Grid grid;
    grid.sizeX = grid.sizeY = grid.sizeZ = 5;
    grid.cellSizeZ = 4.0f;
    Ids ids(grid.cells(), 0);
    ids[grid.index(2, 2, 2)] = Blue;
    const auto volume = makeVolume(grid, ids);
    MarchingCubeSurface surface(volume.get());
    surface.rebuild({0, 0, 0}, sizesOf(grid));

    // The lower tip along z, at 6, is no longer in the group of the other two, at 8.
    float lowTip = 0;
    for (const Triangle &triangle : surface.triangles())
        for (const Triangle::Vertex &vertex : triangle.vertices)
            if (vertex.position[2] == 6.0f) {
                EXPECT_NEAR(vertex.normal[0], 0, 1e-5);
                EXPECT_NEAR(vertex.normal[1], 0, 1e-5);
                lowTip = vertex.normal[2];
            }
    // Its four normals are (+-4, +-4, -1) / sqrt(33).
    EXPECT_NEAR(lowTip, -3 * std::sqrt(33.0) / 4, 1e-4);
    expectRule(*volume, grid, ids, {0, 0, 0}, sizesOf(grid));
}

TEST_F(MarchingCubeSurfaceTest, NormalsOfAGroupThatCancelOutAreNotFinite)
{
    // In cells much longer along y than along z, both sides of a film fall into the same groups.
    Grid grid;
    grid.sizeX = grid.sizeY = 9;
    grid.sizeZ = 5;
    grid.cellSizeY = 8.0f;
    const Ids ids = materialsBy(
        grid, [](std::uint32_t, std::uint32_t, std::uint32_t z) { return z == 2 ? Red : 0U; });
    const auto volume = makeVolume(grid, ids);
    MarchingCubeSurface surface(volume.get());
    surface.rebuild({0, 0, 0}, sizesOf(grid));
    unsigned inner = 0;
    for (const Triangle &triangle : surface.triangles())
        for (const Triangle::Vertex &vertex : triangle.vertices) {
            const float *at = vertex.position;
            if (at[0] < 3 || at[0] > 6 || at[1] < 3 * 8 || at[1] > 6 * 8)
                continue;
            ++inner;
            for (const float part : vertex.normal)
                EXPECT_FALSE(std::isfinite(part)) << at[0] << ", " << at[1] << ", " << at[2];
        }
    EXPECT_GT(inner, 0u);
    expectRule(*volume, grid, ids, {0, 0, 0}, sizesOf(grid));
}

TEST_F(MarchingCubeSurfaceTest, CutBelowTheSizeHasItsLidBehindTheCellOfTheUpperLimit)
{
    Grid grid;
    grid.sizeX = 9;
    grid.sizeY = 8;
    grid.sizeZ = 7;
    const Ids ids(grid.cells(), Red);
    const auto volume = makeVolume(grid, ids);
    MarchingCubeSurface surface(volume.get());
    surface.rebuild({2, 1, 3}, {6, 4, 5});

    // The corner at the upper limit is inside, the next is not; the one at the lower limit is not.
    const Box box = boxOf(surface.triangles());
    EXPECT_EQ(box.lower, (HalfPoint{5, 3, 7}));
    EXPECT_EQ(box.upper, (HalfPoint{13, 9, 11}));
    EXPECT_TRUE(isClosed(surface.triangles()));
    expectRule(*volume, grid, ids, {2, 1, 3}, {6, 4, 5});
}

TEST_F(MarchingCubeSurfaceTest, TransparentMaterialsAreSkinLikeAnyOther)
{
    Grid grid;
    grid.sizeX = 6;
    grid.sizeY = 6;
    grid.sizeZ = 6;
    // Void, a film of each material, void.
    const Ids films = {0, 0, Red, Glass, Clear, 0};
    const Ids ids =
        materialsBy(grid, [&](std::uint32_t, std::uint32_t, std::uint32_t z) { return films[z]; });
    const auto volume = makeVolume(grid, ids);
    MarchingCubeSurface surface(volume.get());
    surface.rebuild({0, 0, 0}, sizesOf(grid));
    // The fully clear film is the top, as if it were opaque.
    EXPECT_EQ(boxOf(surface.triangles()).lower[2], 3);
    EXPECT_EQ(boxOf(surface.triangles()).upper[2], 9);
    EXPECT_TRUE(isClosed(surface.triangles()));
    expectRule(*volume, grid, ids, {0, 0, 0}, sizesOf(grid));
}

TEST_F(MarchingCubeSurfaceTest, VolumeOfOneCellAlongAnAxisShowsNothing)
{
    for (unsigned axis = 0; axis < 3; ++axis) {
        Grid grid;
        grid.sizeX = axis == 0 ? 1 : 6;
        grid.sizeY = axis == 1 ? 1 : 6;
        grid.sizeZ = axis == 2 ? 1 : 6;
        const auto volume = makeVolume(grid, Ids(grid.cells(), Red));
        MarchingCubeSurface surface(volume.get());
        surface.rebuild({0, 0, 0}, sizesOf(grid));
        EXPECT_TRUE(surface.triangles().empty()) << "axis " << axis;
    }
}

TEST_F(MarchingCubeSurfaceTest, CutOfNoCellsShowsNothing)
{
    Grid grid;
    grid.sizeX = grid.sizeY = grid.sizeZ = 6;
    const auto volume = makeVolume(grid, Ids(grid.cells(), Red));
    MarchingCubeSurface surface(volume.get());
    for (const int threads : threadCounts) {
        const PoolThreads pool(threads);
        for (unsigned axis = 0; axis < 3; ++axis)
            for (std::uint32_t limit = 0; limit <= 7; ++limit) {
                CellTriple lower{0, 0, 0};
                CellTriple upper = sizesOf(grid);
                surface.rebuild(lower, upper);
                EXPECT_FALSE(surface.triangles().empty());
                lower[axis] = upper[axis] = limit;
                surface.rebuild(lower, upper);
                EXPECT_TRUE(surface.triangles().empty()) << "axis " << axis << " at " << limit;
                // The other way round.
                lower[axis] = limit + 1;
                surface.rebuild(lower, upper);
                EXPECT_TRUE(surface.triangles().empty()) << "axis " << axis << " at " << limit;
            }
    }
}

TEST_F(MarchingCubeSurfaceTest, LimitsFarBeyondTheVolumeAreThoseOfTheVolume)
{
    constexpr std::uint32_t Most = std::numeric_limits<std::uint32_t>::max();
    Grid grid;
    grid.sizeX = 5;
    grid.sizeY = 6;
    grid.sizeZ = 4;
    const Ids ids(grid.cells(), Red);
    const auto volume = makeVolume(grid, ids);
    MarchingCubeSurface surface(volume.get());
    for (const int threads : threadCounts) {
        const PoolThreads pool(threads);
        surface.rebuild({1, 0, 0}, {Most, Most, Most});
        EXPECT_TRUE(agree(surface.triangles(),
                          MarchingCubeRule::surface(grid, ids, {1, 0, 0}, sizesOf(grid), 1)));
        surface.rebuild({Most - 3, 0, 0}, {Most, 6, 4});
        EXPECT_TRUE(surface.triangles().empty());
    }
}

TEST_F(MarchingCubeSurfaceTest, SecondRebuildReplacesTheFirst)
{
    Grid grid;
    grid.sizeX = 7;
    grid.sizeY = 6;
    grid.sizeZ = 5;
    Ids ids(grid.cells(), Red);
    const auto volume = makeVolume(grid, ids);
    MarchingCubeSurface surface(volume.get());
    surface.rebuild({0, 0, 0}, sizesOf(grid));

    const auto change = [&](std::uint32_t x, std::uint32_t y, std::uint32_t z, std::uint32_t id) {
        ids[grid.index(x, y, z)] = id;
        volume->voxels()[grid.index(x, y, z)].setMaterial(id);
        volume->releaseVoxels();
    };
    change(3, 3, 4, 0);
    change(4, 3, 3, Blue);
    surface.rebuild({0, 0, 0}, sizesOf(grid));
    EXPECT_TRUE(agree(surface.triangles(),
                      MarchingCubeRule::surface(grid, ids, {0, 0, 0}, sizesOf(grid), 1)));
    surface.rebuild({2, 2, 2}, {4, 4, 4});
    EXPECT_TRUE(
        agree(surface.triangles(), MarchingCubeRule::surface(grid, ids, {2, 2, 2}, {4, 4, 4}, 1)));
    surface.rebuild({0, 0, 0}, sizesOf(grid));
    EXPECT_TRUE(agree(surface.triangles(),
                      MarchingCubeRule::surface(grid, ids, {0, 0, 0}, sizesOf(grid), 1)));
}

TEST_F(MarchingCubeSurfaceTest, MaterialsThatTheRegistryLacksKeepTheirIds)
{
    Grid grid;
    grid.sizeX = grid.sizeY = grid.sizeZ = 4;
    const Ids ids = materialsBy(grid, [](std::uint32_t x, std::uint32_t, std::uint32_t) {
        return x < 2 ? Unknown : 65535U + x;
    });
    const auto volume = makeVolume(grid, ids);
    expectRule(*volume, grid, ids, {0, 0, 0}, sizesOf(grid));
    volume->painter().setSurfaceAlgorithm(1);
    volume->painter().rebuild();
    EXPECT_FALSE(volume->painter().marchingCubes().triangles().empty());
    volume->painter().refreshColors();
}

TEST_F(MarchingCubeSurfaceTest, PainterBuildsItOnlyWhenItIsChosenAndOnlyInARebuild)
{
    Grid grid;
    grid.sizeX = grid.sizeY = grid.sizeZ = 6;
    const Ids ids(grid.cells(), Red);
    const auto volume = makeVolume(grid, ids);
    auto &painter = volume->painter();
    painter.rebuild();
    EXPECT_TRUE(painter.marchingCubes().triangles().empty());
    painter.setSurfaceAlgorithm(1);
    EXPECT_TRUE(painter.marchingCubes().triangles().empty());
    painter.setCutLimits({1, 2, 0}, {5, 6, 3});
    EXPECT_TRUE(painter.marchingCubes().triangles().empty());
    painter.rebuild();
    const auto expected = MarchingCubeRule::surface(grid, ids, {1, 2, 0}, {5, 6, 3}, 1);
    EXPECT_TRUE(agree(painter.marchingCubes().triangles(), expected));

    // Under another algorithm it is neither built nor freed.
    painter.setSurfaceAlgorithm(2);
    painter.setCutLimits({0, 0, 0}, {6, 6, 6});
    painter.rebuild();
    EXPECT_TRUE(agree(painter.marchingCubes().triangles(), expected));
    EXPECT_FALSE(painter.octree().opaqueFaces().empty());
}

TEST_F(MarchingCubeSurfaceTest, LocksOfTheVolumeAreFreeAfterARebuild)
{
    Grid grid;
    grid.sizeX = grid.sizeY = grid.sizeZ = 3;
    const auto volume = makeVolume(grid, Ids(grid.cells(), Red));
    MarchingCubeSurface surface(volume.get());
    surface.rebuild({0, 0, 0}, sizesOf(grid));
    surface.rebuild({1, 1, 1}, {1, 1, 1});
    // Would never return otherwise.
    EXPECT_NE(volume->voxels(), nullptr);
    volume->releaseVoxels();
}

} // namespace
