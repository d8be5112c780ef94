#include "Model/Automaton/OctreeSurface.h"

#include "Model/Automaton/TotalVolume.h"
#include "Model/Materials/MaterialFactory.h"
#include "OctreeRule.h"
#include "Support/Volumes.h"
#include "Util/Vector3D.h"

#include <QString>

#include <boost/shared_ptr.hpp>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <functional>
#include <limits>
#include <random>
#include <set>
#include <string>
#include <vector>

using Model::Automaton::CellTriple;
using Model::Automaton::OctreeNode;
using Model::Automaton::OctreeSurface;
using Model::Automaton::TotalVolume;
using Model::Geometry::FaceList;
using Model::Geometry::QuadFace;
using Model::Materials::Material;
using Model::Materials::MaterialFactory;
using OctreeRule::agree;
using OctreeRule::Color;
using OctreeRule::Face;
using OctreeRule::highlighted;
using OctreeRule::Ids;
using OctreeRule::registryColor;
using Support::Grid;
using Support::makeVolume;
using Support::materialsBy;
using Support::PoolThreads;

namespace {

constexpr std::uint32_t Red = 70;
constexpr std::uint32_t Blue = 71;
constexpr std::uint32_t Glass = 72;
constexpr std::uint32_t Foil = 73;
/// Between the two limits of the direct faces: transparent here.
constexpr std::uint32_t AlmostOpaque = 74;
constexpr std::uint32_t Clear = 75;
constexpr std::uint32_t Unknown = 4000000000U;

const std::array<int, 4> threadCounts = {1, 2, 3, 5};

class OctreeSurfaceTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        setMaterial(Red, {0.9f, 0.1f, 0.2f, 1.0f});
        setMaterial(Blue, {0.1f, 0.7f, 0.69f, 1.0f});
        setMaterial(Glass, {0.3f, 0.6f, 0.9f, 0.5f});
        setMaterial(Foil, {0.8f, 0.8f, 0.2f, 0.002f});
        setMaterial(AlmostOpaque, {0.2f, 0.7f, 0.2f, 0.9985f});
        setMaterial(Clear, {0.4f, 0.5f, 0.6f, 0.0005f});
    }
    void TearDown() override { m_registry->loadDefaultMaterials(); }

    void setMaterial(std::uint32_t id, const Color &color)
    {
        ASSERT_TRUE(m_registry->updateMaterial(
            Material(id, QStringLiteral("Test"), 1.0f, 1.0f, 1.0f, color.data())));
    }

    boost::shared_ptr<MaterialFactory> m_registry = MaterialFactory::instance();
};

CellTriple sizesOf(const Grid &grid)
{
    return {grid.sizeX, grid.sizeY, grid.sizeZ};
}

Grid gridOf(std::uint32_t sizeX, std::uint32_t sizeY, std::uint32_t sizeZ)
{
    Grid grid;
    grid.sizeX = sizeX;
    grid.sizeY = sizeY;
    grid.sizeZ = sizeZ;
    return grid;
}

void expectAgreement(const OctreeSurface &surface, const OctreeRule::Surface &rule)
{
    EXPECT_EQ(surface.root().parent, nullptr);
    EXPECT_TRUE(agree(surface.root(), rule.root()));
    EXPECT_TRUE(agree(surface.opaqueFaces(), rule.opaque())) << "opaque";
    EXPECT_TRUE(agree(surface.transparentFaces(), rule.transparent())) << "transparent";
}

/// Compares tree and faces of a volume with the rule.
void expectRule(TotalVolume &volume, const Grid &grid, const Ids &ids, const CellTriple &lower,
                const CellTriple &upper)
{
    OctreeSurface surface(&volume);
    surface.rebuild(lower, upper);
    expectAgreement(surface, OctreeRule::Surface(grid, ids, lower, upper));
}

/// True if the rule's tree has an inner node of a material other than void.
bool hasFilledInnerNode(const OctreeRule::Node &node)
{
    if (node.leaf)
        return false;
    return node.material != 0 ||
           std::any_of(node.children.begin(), node.children.end(),
                       [](const OctreeRule::Node *child) { return hasFilledInnerNode(*child); });
}

std::size_t leaves(const OctreeNode &node)
{
    if (node.leaf)
        return 1;
    std::size_t count = 0;
    for (unsigned i = 0; i < 8; ++i)
        count += leaves(*node.child(i));
    return count;
}

/// The material of a cell by the leaf that it lies in.
std::uint32_t materialAt(const OctreeNode &root, std::uint32_t x, std::uint32_t y, std::uint32_t z)
{
    const OctreeNode *node = &root;
    while (!node->leaf) {
        const std::uint32_t half = node->size / 2;
        node = node->child((x >= node->x + half ? 4U : 0U) + (y >= node->y + half ? 2U : 0U) +
                           (z >= node->z + half ? 1U : 0U));
    }
    return node->material;
}

std::vector<QuadFace> facesOf(const FaceList &list)
{
    std::vector<QuadFace> faces;
    list.forEach([&faces](const QuadFace &face) { faces.push_back(face); });
    return faces;
}

/// Area in drawing units squared.
double areaOf(const QuadFace &face)
{
    double area = 1;
    for (unsigned axis = 0; axis < 3; ++axis)
        if (face.normal[axis] == 0.0f)
            area *= std::abs(static_cast<double>(face.vertices[2][axis]) -
                             static_cast<double>(face.vertices[0][axis]));
    return area;
}

/// The different faces of a list, by corners and material.
std::set<std::vector<double>> differentFaces(const FaceList &list)
{
    std::set<std::vector<double>> faces;
    list.forEach([&faces](const QuadFace &face) {
        std::vector<double> key = {static_cast<double>(OctreeSurface::materialOf(face))};
        for (const auto &vertex : face.vertices)
            for (const float part : vertex)
                key.push_back(static_cast<double>(part));
        faces.insert(key);
    });
    return faces;
}

TEST_F(OctreeSurfaceTest, RandomVolumesHaveTheTreeAndTheFacesOfTheRule)
{
    const std::array<float, 3> cellSizes = {1.0f, 0.35f, 2.0f};
    const Ids palette = {Red, Blue, Glass, Foil, AlmostOpaque, Clear, Unknown};
    std::size_t opaque = 0;
    std::size_t transparent = 0;
    for (unsigned seed = 1; seed <= 160; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        std::mt19937 random(seed);
        Grid grid = gridOf(1 + random() % 9, 1 + random() % 7, 1 + random() % 6);
        grid.cellSizeX = cellSizes[random() % 3];
        grid.cellSizeY = cellSizes[random() % 3];
        grid.cellSizeZ = cellSizes[random() % 3];

        Ids chosen = palette;
        std::shuffle(chosen.begin(), chosen.end(), random);
        chosen.resize(2 + random() % 4);
        // Cells of one or two cells' edge, so that blocks merge.
        const std::uint32_t edge = 1 + random() % 2;
        const unsigned fill = 1 + random() % 10;
        Ids blocks(512);
        for (std::uint32_t &id : blocks)
            id = random() % 10 < fill ? chosen[random() % chosen.size()] : 0U;
        const Ids ids = materialsBy(grid, [&](std::uint32_t x, std::uint32_t y, std::uint32_t z) {
            if (random() % 40 == 0)
                return chosen[0];
            return blocks[((x / edge) * 7 + y / edge) * 6 + z / edge];
        });

        const CellTriple sizes = sizesOf(grid);
        CellTriple lower{};
        CellTriple upper = sizes;
        for (unsigned axis = 0; axis < 3; ++axis) {
            const unsigned kind = random() % 6;
            if (kind < 2) {
                lower[axis] = random() % sizes[axis];
                upper[axis] = lower[axis] + 1 + random() % (sizes[axis] - lower[axis]);
            } else if (kind == 2 && random() % 4 == 0) {
                lower[axis] = upper[axis] = random() % (sizes[axis] + 1);
            }
        }

        const Util::Vector3D position(static_cast<double>(random() % 9) - 4.5,
                                      static_cast<double>(random() % 7) * 11, -3.25);
        TotalVolume volume(grid.sizeX, grid.sizeY, grid.sizeZ, grid.cellSizeX, grid.cellSizeY,
                           grid.cellSizeZ, position, ids);
        const OctreeRule::Surface rule(grid, ids, lower, upper);
        OctreeSurface surface(&volume);
        for (const int threads : threadCounts) {
            const PoolThreads pool(threads);
            surface.rebuild(lower, upper);
            expectAgreement(surface, rule);
        }
        opaque += rule.opaque().size();
        transparent += rule.transparent().size();
        EXPECT_FALSE(hasFilledInnerNode(rule.root()));
    }
    EXPECT_GT(opaque, 1000u);
    EXPECT_GT(transparent, 1000u);
}

TEST_F(OctreeSurfaceTest, LargeVolumeOfAFewBlocksHasTheTreeAndTheFacesOfTheRule)
{
    Grid grid = gridOf(70, 66, 68);
    grid.cellSizeX = 0.35f;
    grid.cellSizeZ = 2.0f;
    const Ids ids = materialsBy(grid, [](std::uint32_t x, std::uint32_t y, std::uint32_t z) {
        if (x >= 60 && y >= 62 && z >= 61)
            return Glass;
        if (x < 40 && y > 5 && z >= 30 && z < 66)
            return (x + y + z) % 50 == 0 ? Blue : Red;
        return z == 63 || z == 64 || (x == 63 && y == 64) ? AlmostOpaque : 0U;
    });
    const auto volume = makeVolume(grid, ids);
    expectRule(*volume, grid, ids, {0, 0, 0}, sizesOf(grid));
    expectRule(*volume, grid, ids, {3, 1, 2}, {67, 65, 66});
    expectRule(*volume, grid, ids, {2, 61, 60}, {69, 65, 68});
}

TEST_F(OctreeSurfaceTest, CutOfAHundredCellsHasARootOf128WhoseRestIsEmpty)
{
    const Grid grid = gridOf(110, 3, 2);
    const Ids ids(grid.cells(), Red);
    const auto volume = makeVolume(grid, ids);
    OctreeSurface surface(volume.get());
    surface.rebuild({5, 0, 0}, {105, 3, 2});
    EXPECT_EQ(surface.root().size, 128u);
    EXPECT_EQ(surface.root().x, 5u);
    EXPECT_FALSE(surface.root().leaf);
    for (std::uint32_t x = 5; x < 133; ++x)
        for (std::uint32_t y = 0; y < 6; ++y)
            for (std::uint32_t z = 0; z < 6; ++z)
                ASSERT_EQ(materialAt(surface.root(), x, y, z), x < 105 && y < 3 && z < 2 ? Red : 0U)
                    << x << ", " << y << ", " << z;
    EXPECT_EQ(materialAt(surface.root(), 132, 127, 127), 0u);
    expectRule(*volume, grid, ids, {5, 0, 0}, {105, 3, 2});
}

TEST_F(OctreeSurfaceTest, VolumeOfVoidIsOneEmptyLeafWithoutFaces)
{
    const Grid grid = gridOf(5, 9, 3);
    const auto volume = makeVolume(grid, Ids(grid.cells(), 0));
    OctreeSurface surface(volume.get());
    surface.rebuild({0, 0, 0}, sizesOf(grid));
    EXPECT_TRUE(surface.root().leaf);
    EXPECT_EQ(surface.root().material, 0u);
    EXPECT_EQ(surface.root().size, 16u);
    EXPECT_TRUE(surface.opaqueFaces().empty());
    EXPECT_TRUE(surface.transparentFaces().empty());
}

TEST_F(OctreeSurfaceTest, SolidCubeAlignedWithTheRootYieldsSixQuads)
{
    for (const std::uint32_t edge : {4U, 64U}) {
        const Grid grid = gridOf(edge, edge, edge);
        const auto volume = makeVolume(grid, Ids(grid.cells(), Blue));
        OctreeSurface surface(volume.get());
        surface.rebuild({0, 0, 0}, sizesOf(grid));
        EXPECT_TRUE(surface.root().leaf);
        EXPECT_EQ(surface.root().material, Blue);
        EXPECT_EQ(surface.root().size, edge);
        EXPECT_TRUE(surface.transparentFaces().empty());

        // In the order z -, z +, x +, x -, y +, y -.
        const std::vector<std::array<float, 3>> normals = {{0, 0, -1}, {0, 0, 1}, {1, 0, 0},
                                                           {-1, 0, 0}, {0, 1, 0}, {0, -1, 0}};
        const std::vector<QuadFace> faces = facesOf(surface.opaqueFaces());
        ASSERT_EQ(faces.size(), 6u);
        for (std::size_t i = 0; i < 6; ++i) {
            EXPECT_EQ(
                (std::array<float, 3>{faces[i].normal[0], faces[i].normal[1], faces[i].normal[2]}),
                normals[i])
                << "face " << i;
            EXPECT_EQ(areaOf(faces[i]), static_cast<double>(edge) * edge);
            EXPECT_EQ(OctreeSurface::materialOf(faces[i]), Blue);
        }
    }
}

TEST_F(OctreeSurfaceTest, SolidCubeInALargerRootYieldsAQuadForEverySide)
{
    const Grid grid = gridOf(16, 16, 16);
    const Ids ids = materialsBy(grid, [](std::uint32_t x, std::uint32_t y, std::uint32_t z) {
        return x >= 4 && x < 8 && y >= 8 && y < 12 && z >= 4 && z < 8 ? Red : 0U;
    });
    const auto volume = makeVolume(grid, ids);
    OctreeSurface surface(volume.get());
    surface.rebuild({0, 0, 0}, sizesOf(grid));
    // Siblings of its own size look at three sides and larger leaves at the others.
    EXPECT_EQ(surface.opaqueFaces().size(), 6u);
    EXPECT_EQ(differentFaces(surface.opaqueFaces()).size(), 6u);
    expectRule(*volume, grid, ids, {0, 0, 0}, sizesOf(grid));
}

TEST_F(OctreeSurfaceTest, ExtentOfAPowerOfTwoIsUsedAsItStands)
{
    const std::array<std::array<std::uint32_t, 2>, 10> sizes = {
        {{1, 1}, {2, 2}, {3, 4}, {4, 4}, {5, 8}, {8, 8}, {9, 16}, {64, 64}, {65, 128}, {128, 128}}};
    for (const auto &size : sizes)
        for (unsigned axis = 0; axis < 3; ++axis) {
            const Grid grid =
                gridOf(axis == 0 ? size[0] : 1, axis == 1 ? size[0] : 1, axis == 2 ? size[0] : 1);
            const Ids ids(grid.cells(), Red);
            const auto volume = makeVolume(grid, ids);
            OctreeSurface surface(volume.get());
            surface.rebuild({0, 0, 0}, sizesOf(grid));
            EXPECT_EQ(surface.root().size, size[1]) << size[0] << " cells along " << axis;
            expectRule(*volume, grid, ids, {0, 0, 0}, sizesOf(grid));
        }
}

TEST_F(OctreeSurfaceTest, OnlyCellOfACutIsTheRoot)
{
    const Grid grid = gridOf(4, 5, 6);
    Ids ids(grid.cells(), Red);
    ids[grid.index(2, 3, 4)] = Glass;
    ids[grid.index(1, 1, 1)] = 0;
    const auto volume = makeVolume(grid, ids);
    OctreeSurface surface(volume.get());

    surface.rebuild({2, 3, 4}, {3, 4, 5});
    EXPECT_TRUE(surface.root().leaf);
    EXPECT_EQ(surface.root().material, Glass);
    EXPECT_EQ(surface.root().size, 1u);
    EXPECT_EQ(surface.root().z, 4u);
    EXPECT_TRUE(surface.opaqueFaces().empty());
    EXPECT_EQ(surface.transparentFaces().size(), 6u);

    surface.rebuild({1, 1, 1}, {2, 2, 2});
    EXPECT_TRUE(surface.root().leaf);
    EXPECT_EQ(surface.root().material, 0u);
    EXPECT_TRUE(surface.transparentFaces().empty());

    surface.rebuild({3, 4, 5}, {4, 5, 6});
    EXPECT_EQ(surface.root().material, Red);
    EXPECT_EQ(surface.opaqueFaces().size(), 6u);
    expectRule(*volume, grid, ids, {2, 3, 4}, {3, 4, 5});
}

TEST_F(OctreeSurfaceTest, TouchingOpaqueMaterialsHaveNoFacesBetweenThem)
{
    const Grid grid = gridOf(8, 8, 8);
    const Ids ids = materialsBy(
        grid, [](std::uint32_t, std::uint32_t, std::uint32_t z) { return z < 4 ? Red : Blue; });
    const auto volume = makeVolume(grid, ids);
    OctreeSurface surface(volume.get());
    surface.rebuild({0, 0, 0}, sizesOf(grid));
    // Four quads a side.
    const std::vector<QuadFace> faces = facesOf(surface.opaqueFaces());
    EXPECT_EQ(faces.size(), 24u);
    for (const QuadFace &face : faces)
        if (face.normal[2] != 0.0f) {
            EXPECT_NE(face.vertices[0][2], 4.0f);
        }
    expectRule(*volume, grid, ids, {0, 0, 0}, sizesOf(grid));
}

TEST_F(OctreeSurfaceTest, SubstrateShowsAFaceTowardsATransparentFilmAndTheFilmNoneBack)
{
    const Grid grid = gridOf(8, 8, 8);
    const Ids ids = materialsBy(grid, [](std::uint32_t, std::uint32_t, std::uint32_t z) {
        return z < 4 ? Red : z < 6 ? Glass : 0U;
    });
    const auto volume = makeVolume(grid, ids);
    OctreeSurface surface(volume.get());
    surface.rebuild({0, 0, 0}, sizesOf(grid));

    double towardsFilm = 0;
    for (const QuadFace &face : facesOf(surface.opaqueFaces())) {
        EXPECT_EQ(OctreeSurface::materialOf(face), Red);
        if (face.normal[2] > 0.0f) {
            EXPECT_EQ(face.vertices[0][2], 4.0f);
            towardsFilm += areaOf(face);
        }
    }
    // Its large leaves give their faces once for each of the four smaller ones above.
    EXPECT_EQ(towardsFilm, 4 * 64.0);
    double towardsVoid = 0;
    double sides = 0;
    for (const QuadFace &face : facesOf(surface.transparentFaces())) {
        EXPECT_EQ(OctreeSurface::materialOf(face), Glass);
        EXPECT_GE(face.normal[2], 0.0f) << "towards the substrate";
        (face.normal[2] > 0.0f ? towardsVoid : sides) += areaOf(face);
    }
    EXPECT_EQ(towardsVoid, 64);
    EXPECT_EQ(sides, 4 * 8 * 2);
    expectRule(*volume, grid, ids, {0, 0, 0}, sizesOf(grid));
}

TEST_F(OctreeSurfaceTest, TransparentMaterialsShowNothingTowardsEachOther)
{
    const Grid grid = gridOf(4, 4, 4);
    const Ids ids = materialsBy(grid, [](std::uint32_t x, std::uint32_t, std::uint32_t) {
        return x < 2 ? Glass : AlmostOpaque;
    });
    const auto volume = makeVolume(grid, ids);
    OctreeSurface surface(volume.get());
    surface.rebuild({0, 0, 0}, sizesOf(grid));
    EXPECT_TRUE(surface.opaqueFaces().empty());
    EXPECT_EQ(surface.transparentFaces().size(), 24u);
    for (const QuadFace &face : facesOf(surface.transparentFaces()))
        if (face.normal[0] != 0.0f) {
            EXPECT_NE(face.vertices[0][0], 2.0f);
        }
}

TEST_F(OctreeSurfaceTest, FullyClearBlocksAreNotShownAndFaintOnesAre)
{
    const Grid grid = gridOf(4, 4, 4);
    for (const std::uint32_t id : {Clear, Foil}) {
        const Ids ids = materialsBy(
            grid, [id](std::uint32_t x, std::uint32_t, std::uint32_t) { return x < 2 ? id : Red; });
        const auto volume = makeVolume(grid, ids);
        OctreeSurface surface(volume.get());
        surface.rebuild({0, 0, 0}, sizesOf(grid));
        EXPECT_EQ(surface.transparentFaces().size(), id == Clear ? 0u : 12u);
        // The opaque half is seen through the other one.
        EXPECT_EQ(surface.opaqueFaces().size(), 16u);
        expectRule(*volume, grid, ids, {0, 0, 0}, sizesOf(grid));
    }
}

TEST_F(OctreeSurfaceTest, LargeLeafGivesItsFaceOnceForEverySmallerLeafThatLooksAtIt)
{
    const Grid grid = gridOf(8, 4, 4);
    // A block of 4, and beside it the same with a grain far from the common side.
    const Ids ids = materialsBy(grid, [](std::uint32_t x, std::uint32_t y, std::uint32_t z) {
        return x < 4 || (x == 7 && y == 3 && z == 3) ? Red : 0U;
    });
    const auto volume = makeVolume(grid, ids);
    OctreeSurface surface(volume.get());
    surface.rebuild({0, 0, 0}, sizesOf(grid));
    unsigned copies = 0;
    for (const QuadFace &face : facesOf(surface.opaqueFaces()))
        if (face.normal[0] == 1.0f && face.vertices[0][0] == 4.0f) {
            EXPECT_EQ(areaOf(face), 16);
            ++copies;
        }
    EXPECT_EQ(copies, 4u);
    expectRule(*volume, grid, ids, {0, 0, 0}, sizesOf(grid));
}

TEST_F(OctreeSurfaceTest, DetailSurvivesTheMergingOfAllThatIsAroundIt)
{
    // A merge asks for the values of eight children and not whether they are leaves. What an inner
    // node keeps is the void that it was split from: a filled leaf holds filled cells only, each of
    // which comes once, so that it is never entered again. The octants with detail below are
    // therefore never taken for one of the material around them, wherever the detail lies.
    const Grid grid = gridOf(8, 8, 8);
    for (unsigned detail = 0; detail < 512; detail += 7)
        for (const std::uint32_t id : {0U, Blue, Glass}) {
            SCOPED_TRACE("cell " + std::to_string(detail) + " of material " + std::to_string(id));
            Ids ids(grid.cells(), Red);
            ids[detail] = id;
            const OctreeRule::Surface rule(grid, ids, {0, 0, 0}, sizesOf(grid));
            ASSERT_FALSE(hasFilledInnerNode(rule.root()));
            const auto volume = makeVolume(grid, ids);
            OctreeSurface surface(volume.get());
            surface.rebuild({0, 0, 0}, sizesOf(grid));
            expectAgreement(surface, rule);
            // Seven octants at each of the three levels, and eight cells at the lowest.
            EXPECT_EQ(leaves(surface.root()), 7u + 7u + 8u);
            const auto at = static_cast<std::uint32_t>(detail);
            EXPECT_EQ(materialAt(surface.root(), at / 64, at / 8 % 8, at % 8), id);
        }
}

TEST_F(OctreeSurfaceTest, DetailInEveryOctantStopsTheMerges)
{
    const Grid grid = gridOf(16, 16, 16);
    for (unsigned seed = 1; seed <= 12; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        std::mt19937 random(seed);
        // All of one material, with grains that differ in places on purpose: in the first or last
        // cells of octants, where the cell that completes an octant is one of them or just is not.
        const Ids grains = {0, Blue, Glass, Clear};
        const Ids ids = materialsBy(grid, [&](std::uint32_t x, std::uint32_t y, std::uint32_t z) {
            const bool isLast = x % 4 == 3 && y % 4 == 3 && z % 4 == 3;
            const bool isFirst = x % 4 == 0 && y % 4 == 0 && z % 4 == 0;
            return (isLast || isFirst) && random() % 2 == 0 ? grains[random() % 4] : Red;
        });
        const auto volume = makeVolume(grid, ids);
        OctreeSurface surface(volume.get());
        surface.rebuild({0, 0, 0}, sizesOf(grid));
        expectAgreement(surface, OctreeRule::Surface(grid, ids, {0, 0, 0}, sizesOf(grid)));
        for (std::uint32_t x = 0; x < 16; ++x)
            for (std::uint32_t y = 0; y < 16; ++y)
                for (std::uint32_t z = 0; z < 16; ++z)
                    ASSERT_EQ(materialAt(surface.root(), x, y, z), ids[grid.index(x, y, z)]);
    }
}

TEST_F(OctreeSurfaceTest, CutWithoutCellsShowsNothing)
{
    const Grid grid = gridOf(6, 5, 7);
    const auto volume = makeVolume(grid, Ids(grid.cells(), Red));
    OctreeSurface surface(volume.get());
    const auto expectNothing = [&](const CellTriple &lower, const CellTriple &upper) {
        surface.rebuild({0, 0, 0}, sizesOf(grid));
        EXPECT_FALSE(surface.opaqueFaces().empty());
        surface.rebuild(lower, upper);
        EXPECT_TRUE(surface.root().leaf);
        EXPECT_EQ(surface.root().material, 0u);
        EXPECT_TRUE(surface.opaqueFaces().empty());
        EXPECT_TRUE(surface.transparentFaces().empty());
    };
    for (unsigned axis = 0; axis < 3; ++axis)
        for (std::uint32_t limit = 0; limit <= sizesOf(grid)[axis]; ++limit) {
            SCOPED_TRACE("axis " + std::to_string(axis) + " at " + std::to_string(limit));
            CellTriple lower{0, 0, 0};
            CellTriple upper = sizesOf(grid);
            lower[axis] = upper[axis] = limit;
            expectNothing(lower, upper);
            // The extents of the other axes still make the root.
            EXPECT_EQ(surface.root().size, 8u);
            lower[axis] = limit + 1;
            expectNothing(lower, upper);
        }
    expectNothing({2, 2, 2}, {2, 2, 2});
    EXPECT_EQ(surface.root().size, 0u);
}

TEST_F(OctreeSurfaceTest, LimitsBeyondTheVolumeShowNoMoreThanTheVolume)
{
    const Grid grid = gridOf(6, 5, 7);
    std::mt19937 random(3);
    const Ids ids = materialsBy(grid, [&](std::uint32_t, std::uint32_t, std::uint32_t) {
        return random() % 3 == 0 ? 0U : random() % 2 == 0 ? Red : Glass;
    });
    const auto volume = makeVolume(grid, ids);
    OctreeSurface whole(volume.get());
    OctreeSurface surface(volume.get());
    whole.rebuild({1, 0, 2}, sizesOf(grid));
    for (const CellTriple &upper :
         {CellTriple{6, 5, 9}, CellTriple{7, 6, 8}, CellTriple{30, 5, 7}, CellTriple{6, 5, 1000}}) {
        surface.rebuild({1, 0, 2}, upper);
        EXPECT_EQ(differentFaces(surface.opaqueFaces()), differentFaces(whole.opaqueFaces()));
        EXPECT_EQ(differentFaces(surface.transparentFaces()),
                  differentFaces(whole.transparentFaces()));
    }
    constexpr std::uint32_t Most = std::numeric_limits<std::uint32_t>::max();
    surface.rebuild({1, 0, 2}, {Most, Most, Most});
    surface.rebuild({Most, Most, Most}, {Most, Most, Most});
    surface.rebuild({100, 100, 100}, {200, 200, 200});
    EXPECT_TRUE(surface.opaqueFaces().empty());
    EXPECT_TRUE(surface.transparentFaces().empty());
}

std::vector<Face> recolored(std::vector<Face> faces,
                            const std::function<Color(const Face &)> &colorOf)
{
    for (Face &face : faces)
        face.color = colorOf(face);
    return faces;
}

TEST_F(OctreeSurfaceTest, RefreshedColorsAreThoseOfTheRegistryAndHighlightedInASelectedVolume)
{
    const Grid grid = gridOf(4, 4, 4);
    const Ids ids = materialsBy(grid, [](std::uint32_t x, std::uint32_t y, std::uint32_t) {
        return x == 0 ? Red : x == 1 ? Blue : y == 0 ? Glass : 0U;
    });
    const auto volume = makeVolume(grid, ids);
    OctreeSurface surface(volume.get());
    surface.rebuild({0, 0, 0}, sizesOf(grid));
    const OctreeRule::Surface rule(grid, ids, {0, 0, 0}, sizesOf(grid));
    ASSERT_FALSE(rule.opaque().empty());
    ASSERT_FALSE(rule.transparent().empty());
    const auto expectColors = [&](const std::function<Color(const Face &)> &colorOf) {
        EXPECT_TRUE(agree(surface.opaqueFaces(), recolored(rule.opaque(), colorOf)));
        EXPECT_TRUE(agree(surface.transparentFaces(), recolored(rule.transparent(), colorOf)));
    };

    // A face stays in its list and where it is, whatever the alpha becomes.
    setMaterial(Red, {0.71f, 0.7f, 0.3f, 0.25f});
    setMaterial(Glass, {0.0f, 1.0f, 0.699f, 1.0f});
    expectColors([](const Face &face) { return face.color; });
    surface.refreshColors();
    const auto fromRegistry = [](const Face &face) { return registryColor(face.material); };
    expectColors(fromRegistry);

    volume->setSelected(true);
    surface.refreshColors();
    expectColors([&](const Face &face) { return highlighted(fromRegistry(face)); });
    // What the faces have is highlighted, not what the registry has.
    setMaterial(Blue, {0.5f, 0.5f, 0.5f, 1.0f});
    surface.refreshColors();
    const Color oldBlue = {0.1f, 0.7f, 0.69f, 1.0f};
    expectColors([&](const Face &face) {
        return highlighted(highlighted(face.material == Blue ? oldBlue : fromRegistry(face)));
    });

    volume->setSelected(false);
    surface.refreshColors();
    expectColors(fromRegistry);
}

TEST_F(OctreeSurfaceTest, RebuildOfASelectedVolumeTakesThePlainColors)
{
    const Grid grid = gridOf(2, 2, 2);
    const Ids ids(grid.cells(), Red);
    const auto volume = makeVolume(grid, ids);
    volume->setSelected(true);
    expectRule(*volume, grid, ids, {0, 0, 0}, sizesOf(grid));
}

TEST_F(OctreeSurfaceTest, MaterialsThatTheRegistryLacksLookLikeTheEmptyMaterial)
{
    const Grid grid = gridOf(4, 3, 2);
    const Ids ids = materialsBy(grid, [](std::uint32_t x, std::uint32_t, std::uint32_t) {
        return x < 2 ? Unknown : x == 2 ? Glass : 65535U;
    });
    const auto volume = makeVolume(grid, ids);
    OctreeSurface surface(volume.get());
    surface.rebuild({0, 0, 0}, sizesOf(grid));
    unsigned unknown = 0;
    for (const QuadFace &face : facesOf(surface.opaqueFaces())) {
        EXPECT_EQ((Color{face.color[0], face.color[1], face.color[2], face.color[3]}),
                  (Color{0.5f, 0.5f, 0.5f, 1.0f}));
        if (OctreeSurface::materialOf(face) == Unknown)
            ++unknown;
    }
    EXPECT_GT(unknown, 0u);
    expectRule(*volume, grid, ids, {0, 0, 0}, sizesOf(grid));
    surface.refreshColors();
    volume->setSelected(true);
    surface.refreshColors();
    EXPECT_EQ(facesOf(surface.opaqueFaces()).front().color[0], 0.8f);
}

TEST_F(OctreeSurfaceTest, SecondRebuildReplacesTheFirst)
{
    const Grid grid = gridOf(9, 6, 5);
    Ids ids(grid.cells(), Red);
    const auto volume = makeVolume(grid, ids);
    OctreeSurface surface(volume.get());
    const auto rebuildAndCompare = [&](const CellTriple &lower, const CellTriple &upper) {
        surface.rebuild(lower, upper);
        expectAgreement(surface, OctreeRule::Surface(grid, ids, lower, upper));
    };
    rebuildAndCompare({0, 0, 0}, sizesOf(grid));
    ids[grid.index(3, 3, 4)] = 0;
    ids[grid.index(4, 3, 3)] = Glass;
    for (std::size_t i = 0; i < ids.size(); ++i) {
        volume->voxels()[i].setMaterial(ids[i]);
        volume->releaseVoxels();
    }
    rebuildAndCompare({0, 0, 0}, sizesOf(grid));
    rebuildAndCompare({2, 2, 2}, {4, 4, 4});
    rebuildAndCompare({4, 3, 3}, {5, 4, 4});
    rebuildAndCompare({0, 0, 0}, sizesOf(grid));
    // A material that turns clear is another picture of the same cells.
    setMaterial(Red, {0.9f, 0.1f, 0.2f, 0.5f});
    rebuildAndCompare({0, 0, 0}, sizesOf(grid));
}

TEST_F(OctreeSurfaceTest, PainterBuildsItOnlyWhenItIsChosenAndOnlyInARebuild)
{
    const Grid grid = gridOf(6, 6, 6);
    const Ids ids(grid.cells(), Red);
    const auto volume = makeVolume(grid, ids);
    auto &painter = volume->painter();
    painter.rebuild();
    EXPECT_TRUE(painter.octree().opaqueFaces().empty());
    painter.setSurfaceAlgorithm(2);
    painter.setCutLimits({1, 2, 0}, {5, 6, 3});
    EXPECT_TRUE(painter.octree().opaqueFaces().empty());
    painter.rebuild();
    const OctreeRule::Surface rule(grid, ids, {1, 2, 0}, {5, 6, 3});
    expectAgreement(painter.octree(), rule);

    setMaterial(Red, {0.2f, 0.3f, 0.4f, 1.0f});
    painter.refreshColors();
    EXPECT_TRUE(agree(painter.octree().opaqueFaces(), recolored(rule.opaque(), [](const Face &) {
                          return Color{0.2f, 0.3f, 0.4f, 1.0f};
                      })));

    // Under another algorithm it is neither built nor recoloured nor freed.
    painter.setSurfaceAlgorithm(0);
    painter.setCutLimits({0, 0, 0}, {6, 6, 6});
    painter.rebuild();
    EXPECT_EQ(painter.octree().opaqueFaces().size(), rule.opaque().size());
    EXPECT_EQ(painter.octree().root().x, 1u);
}

TEST_F(OctreeSurfaceTest, LocksOfTheVolumeAreFreeAfterARebuild)
{
    const Grid grid = gridOf(3, 3, 3);
    const auto volume = makeVolume(grid, Ids(grid.cells(), Red));
    OctreeSurface surface(volume.get());
    surface.rebuild({0, 0, 0}, sizesOf(grid));
    surface.rebuild({1, 1, 1}, {1, 1, 1});
    surface.refreshColors();
    // Would never return otherwise.
    EXPECT_NE(volume->voxels(), nullptr);
    volume->releaseVoxels();
}

} // namespace
