#include "Model/Automaton/TotalVolumePainter.h"

#include "FaceRules.h"
#include "Model/Automaton/TotalVolume.h"
#include "Model/Materials/MaterialFactory.h"
#include "Support/Volumes.h"

#include <QDir>
#include <QSet>
#include <QString>
#include <QThreadPool>

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <functional>
#include <future>
#include <map>
#include <random>
#include <vector>

using FaceRules::agree;
using FaceRules::Color;
using FaceRules::emptyCellFaces;
using FaceRules::emptyColor;
using FaceRules::Face;
using FaceRules::Faces;
using FaceRules::facesOf;
using FaceRules::highlighted;
using FaceRules::Ids;
using FaceRules::recolored;
using FaceRules::registryColor;
using FaceRules::text;
using FaceRules::unknownColor;
using FaceRules::visibleFaces;
using FaceRules::wholeOf;
using Model::Automaton::CellTriple;
using Model::Automaton::CutLimits;
using Model::Automaton::TotalVolume;
using Model::Automaton::TotalVolumePainter;
using Model::Automaton::Voxel;
using Model::Geometry::FaceList;
using Model::Geometry::QuadFace;
using Model::Materials::Material;
using Model::Materials::MaterialFactory;
using Support::Grid;
using Support::makeVolume;
using Support::PoolThreads;

namespace {

QSet<QString> threadsOfThisProcess()
{
    const QStringList names =
        QDir(QStringLiteral("/proc/self/task")).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    return QSet<QString>(names.begin(), names.end());
}

/// True if `act` starts threads of the global pool, which are all gone before.
bool usesPoolThreads(const std::function<void()> &act)
{
    QThreadPool::globalInstance()->waitForDone();
    const QSet<QString> before = threadsOfThisProcess();
    act();
    return !(threadsOfThisProcess() - before).isEmpty();
}

// Ids of the materials of these tests; the last is in no registry.
constexpr std::uint32_t Red = 70;
constexpr std::uint32_t Blue = 71;
constexpr std::uint32_t Glass = 72;
constexpr std::uint32_t Foil = 73;
constexpr std::uint32_t NearlyClear = 74;
constexpr std::uint32_t AlmostOpaque = 75;
constexpr std::uint32_t LargestId = 4294967295U;
constexpr std::uint32_t Unknown = 4000000000U;

class TotalVolumePainterTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        setMaterial(Red, {0.9f, 0.1f, 0.2f, 1.0f});
        setMaterial(Blue, {0.1f, 0.2f, 0.9f, 1.0f});
        setMaterial(Glass, {0.3f, 0.6f, 0.9f, 0.5f});
        setMaterial(Foil, {0.8f, 0.8f, 0.2f, 0.6f});
        setMaterial(NearlyClear, {0.4f, 0.5f, 0.6f, 0.05f});
        setMaterial(AlmostOpaque, {0.2f, 0.7f, 0.2f, 0.998f});
        setMaterial(LargestId, {0.25f, 0.35f, 0.45f, 1.0f});
    }
    void TearDown() override { m_registry->loadDefaultMaterials(); }

    void setMaterial(std::uint32_t id, const Color &color)
    {
        ASSERT_TRUE(m_registry->updateMaterial(
            Material(id, QStringLiteral("Test"), 1.0f, 1.0f, 1.0f, color.data())));
    }

    /// Rebuilds, and compares both lists with what the rules say.
    static void expectVisibleFaces(TotalVolume &volume, const Grid &grid, const Ids &ids)
    {
        volume.painter().rebuild();
        expectPresentFaces(volume, grid, ids);
    }

    static void expectPresentFaces(TotalVolume &volume, const Grid &grid, const Ids &ids)
    {
        CutLimits cut;
        volume.painter().cutLimits(cut.lower, cut.upper);
        const Faces expected = visibleFaces(grid, ids, cut);
        const Voxel *cells = cellsOf(volume);
        EXPECT_TRUE(agree(volume.painter().opaqueFaces(), expected.opaque, cells)) << "opaque";
        EXPECT_TRUE(agree(volume.painter().transparentFaces(), expected.transparent, cells))
            << "transparent";
    }

    static void expectVisibleFaces(const Grid &grid, const Ids &ids)
    {
        const auto volume = makeVolume(grid, ids);
        expectVisibleFaces(*volume, grid, ids);
    }

    static const Voxel *cellsOf(TotalVolume &volume)
    {
        const Voxel *cells = volume.voxels();
        volume.releaseVoxels();
        return cells;
    }

    static std::size_t opaqueCount(TotalVolume &volume)
    {
        return volume.painter().opaqueFaces().size();
    }

    static std::size_t transparentCount(TotalVolume &volume)
    {
        return volume.painter().transparentFaces().size();
    }

    /// Colours of the first opaque face, both of which must be the same.
    static Color firstColor(TotalVolume &volume)
    {
        return firstColor(volume.painter().opaqueFaces());
    }

    static Color firstColor(const FaceList &list)
    {
        if (list.empty()) {
            ADD_FAILURE() << "no face";
            return {};
        }
        const QuadFace face = facesOf(list).front();
        const Color color{face.color[0], face.color[1], face.color[2], face.color[3]};
        EXPECT_EQ(
            (Color{face.edgeColor[0], face.edgeColor[1], face.edgeColor[2], face.edgeColor[3]}),
            color);
        return color;
    }

    boost::shared_ptr<MaterialFactory> m_registry = MaterialFactory::instance();
};

/// Cells at random, in runs along z, of a few of these ids.
Ids randomIds(std::mt19937 &random, const Grid &grid, const Ids &palette)
{
    std::vector<std::uint32_t> chosen;
    const std::size_t kinds = 1 + random() % palette.size();
    for (std::size_t i = 0; i < kinds; ++i)
        chosen.push_back(palette[random() % palette.size()]);
    const unsigned turnover = 1 + random() % 10;
    std::uint32_t id = chosen[0];
    return Support::materialsBy(grid, [&](std::uint32_t, std::uint32_t, std::uint32_t) {
        if (random() % 10 < turnover)
            id = chosen[random() % chosen.size()];
        return id;
    });
}

/// Cells of these ids one after the other.
Ids idsInTurn(const Grid &grid, const Ids &palette)
{
    Ids ids(grid.cells());
    for (std::size_t i = 0; i < ids.size(); ++i)
        ids[i] = palette[i % palette.size()];
    return ids;
}

CutLimits randomCut(std::mt19937 &random, const Grid &grid)
{
    const std::uint32_t sizes[3] = {grid.sizeX, grid.sizeY, grid.sizeZ};
    CutLimits cut;
    for (unsigned axis = 0; axis < 3; ++axis) {
        const std::uint32_t one = random() % (sizes[axis] + 1);
        const std::uint32_t two = random() % (sizes[axis] + 1);
        cut.lower[axis] = std::min(one, two);
        cut.upper[axis] = std::max(one, two);
    }
    return cut;
}

} // namespace

TEST_F(TotalVolumePainterTest, StartsWithoutFacesWithTheWholeVolumeInTheCut)
{
    const auto volume = makeVolume({3, 4, 5}, Ids(60, Red));
    TotalVolumePainter &painter = volume->painter();
    EXPECT_EQ(opaqueCount(*volume), 0U);
    EXPECT_EQ(transparentCount(*volume), 0U);
    EXPECT_TRUE(painter.emptyFaces().empty());
    CellTriple lower{9, 9, 9};
    CellTriple upper{9, 9, 9};
    painter.cutLimits(lower, upper);
    EXPECT_EQ(lower, (CellTriple{0, 0, 0}));
    EXPECT_EQ(upper, (CellTriple{3, 4, 5}));
    EXPECT_FALSE(painter.showEmptyVoxels());
    EXPECT_EQ(painter.surfaceAlgorithm(), 0U);
}

TEST_F(TotalVolumePainterTest, EmptyVolumeYieldsNoFaces)
{
    const Grid grid{3, 4, 5};
    const auto volume = makeVolume(grid, Ids(60, 0));
    volume->painter().rebuild();
    EXPECT_EQ(opaqueCount(*volume), 0U);
    EXPECT_EQ(transparentCount(*volume), 0U);
    EXPECT_TRUE(volume->painter().emptyFaces().empty());
}

TEST_F(TotalVolumePainterTest, EmptyVolumeWithEmptyCellsShownYieldsAllSixFacesOfEveryCell)
{
    const Grid grid{3, 4, 5, 1.0f, 0.5f, 0.35f};
    const Ids ids(60, 0);
    const auto volume = makeVolume(grid, ids);
    volume->painter().setShowEmptyVoxels(true);
    EXPECT_TRUE(volume->painter().showEmptyVoxels());
    EXPECT_TRUE(volume->painter().emptyFaces().empty());
    volume->painter().rebuild();
    EXPECT_EQ(volume->painter().emptyFaces().size(), 360U);
    EXPECT_TRUE(agree(volume->painter().emptyFaces(), emptyCellFaces(grid, ids, wholeOf(grid)),
                      cellsOf(*volume)));
    EXPECT_EQ(opaqueCount(*volume), 0U);
    EXPECT_EQ(transparentCount(*volume), 0U);
}

TEST_F(TotalVolumePainterTest, OnlyVoidCellsOfTheCutAreOutlinedAsEmpty)
{
    const Grid grid{9, 5, 6};
    const Ids ids = Support::materialsBy(grid, [](auto x, auto y, auto z) -> std::uint32_t {
        const std::uint32_t kinds[] = {0, Red, 0, Glass, Unknown};
        return kinds[(x + 2 * y + 3 * z) % 5];
    });
    const CutLimits cut{{1, 1, 2}, {8, 5, 5}};
    const auto volume = makeVolume(grid, ids);
    volume->painter().setShowEmptyVoxels(true);
    volume->painter().setCutLimits(cut.lower, cut.upper);
    // More threads than columns too.
    for (const int threads : {1, 2, 3, 5, 8, 20}) {
        SCOPED_TRACE(testing::Message() << threads << " threads");
        const PoolThreads pool(threads);
        volume->painter().rebuild();
        EXPECT_TRUE(agree(volume->painter().emptyFaces(), emptyCellFaces(grid, ids, cut),
                          cellsOf(*volume)));
        expectPresentFaces(*volume, grid, ids);
    }
}

TEST_F(TotalVolumePainterTest, EmptyCellsAreOutlinedByTheNextRebuildOnly)
{
    const Grid grid{2, 1, 1};
    const auto volume = makeVolume(grid, Ids{0, Red});
    volume->painter().setShowEmptyVoxels(true);
    volume->painter().rebuild();
    EXPECT_EQ(volume->painter().emptyFaces().size(), 6U);
    volume->voxels()[1].setMaterial(0);
    volume->releaseVoxels();
    EXPECT_EQ(volume->painter().emptyFaces().size(), 6U);
    volume->painter().rebuild();
    EXPECT_EQ(volume->painter().emptyFaces().size(), 12U);
    volume->painter().rebuild();
    EXPECT_EQ(volume->painter().emptyFaces().size(), 12U);
}

TEST_F(TotalVolumePainterTest, SingleCellShowsItsSixSides)
{
    const Grid grid{1, 1, 1, 2.0f, 3.0f, 0.35f};
    const auto volume = makeVolume(grid, Ids{Red});
    volume->painter().rebuild();
    const std::vector<QuadFace> faces = facesOf(volume->painter().opaqueFaces());
    ASSERT_EQ(faces.size(), 6U);
    const float x = 2.0f;
    const float y = 3.0f;
    const float z = 0.35f;
    const float corners[6][4][3] = {
        {{0, 0, 0}, {0, y, 0}, {x, y, 0}, {x, 0, 0}}, {{0, 0, z}, {x, 0, z}, {x, y, z}, {0, y, z}},
        {{0, 0, 0}, {x, 0, 0}, {x, 0, z}, {0, 0, z}}, {{0, y, 0}, {0, y, z}, {x, y, z}, {x, y, 0}},
        {{0, 0, 0}, {0, 0, z}, {0, y, z}, {0, y, 0}}, {{x, 0, 0}, {x, y, 0}, {x, y, z}, {x, 0, z}}};
    const float normals[6][3] = {{0, 0, -1}, {0, 0, 1},  {0, -1, 0},
                                 {0, 1, 0},  {-1, 0, 0}, {1, 0, 0}};
    for (unsigned i = 0; i < 6; ++i) {
        SCOPED_TRACE(i);
        for (unsigned vertex = 0; vertex < 4; ++vertex)
            EXPECT_EQ(text(faces[i].vertices[vertex], 3), text(corners[i][vertex], 3));
        EXPECT_EQ(text(faces[i].normal, 3), text(normals[i], 3));
        EXPECT_EQ(faces[i].voxel, cellsOf(*volume));
    }
    expectPresentFaces(*volume, grid, {Red});
}

TEST_F(TotalVolumePainterTest, FullOpaqueBlockShowsExactlyItsOuterSkin)
{
    const Grid grid{7, 5, 4};
    const Ids ids(140, Red);
    for (int threads = 1; threads <= 5; ++threads) {
        SCOPED_TRACE(testing::Message() << threads << " threads");
        const PoolThreads pool(threads);
        const auto volume = makeVolume(grid, ids);
        expectVisibleFaces(*volume, grid, ids);
        EXPECT_EQ(opaqueCount(*volume), 2U * (7 * 5 + 5 * 4 + 7 * 4));
        EXPECT_EQ(transparentCount(*volume), 0U);
    }
}

TEST_F(TotalVolumePainterTest, TransparentBlockShowsItsOuterSkinToo)
{
    const Grid grid{7, 5, 4};
    const Ids ids(140, Glass);
    const auto volume = makeVolume(grid, ids);
    expectVisibleFaces(*volume, grid, ids);
    EXPECT_EQ(opaqueCount(*volume), 0U);
    EXPECT_EQ(transparentCount(*volume), 2U * (7 * 5 + 5 * 4 + 7 * 4));
}

TEST_F(TotalVolumePainterTest, TouchingOpaqueFilmsShowNoFacesBetweenThem)
{
    const Grid grid{3, 4, 6};
    const Ids ids =
        Support::materialsBy(grid, [](auto, auto, auto z) { return z < 2 ? Red : Blue; });
    const auto volume = makeVolume(grid, ids);
    expectVisibleFaces(*volume, grid, ids);
    EXPECT_EQ(opaqueCount(*volume), 2U * (3 * 4 + 4 * 6 + 3 * 6));
}

TEST_F(TotalVolumePainterTest, OpaqueAndTransparentNeighboursBothKeepTheirFaces)
{
    for (const Ids &ids : {Ids{Red, Glass}, Ids{Glass, Red}}) {
        const auto volume = makeVolume({1, 1, 2}, ids);
        expectVisibleFaces(*volume, {1, 1, 2}, ids);
        EXPECT_EQ(opaqueCount(*volume), 6U);
        EXPECT_EQ(transparentCount(*volume), 6U);
    }
}

TEST_F(TotalVolumePainterTest, TransparentFilmsShowTheirBoundaryToEachOther)
{
    const auto volume = makeVolume({1, 1, 4}, Ids{Glass, Glass, Foil, Foil});
    expectVisibleFaces(*volume, {1, 1, 4}, {Glass, Glass, Foil, Foil});
    EXPECT_EQ(transparentCount(*volume), 20U);
}

TEST_F(TotalVolumePainterTest, TransparentFilmsOfOneColorAreStillTwoMaterials)
{
    setMaterial(Foil, registryColor(Glass));
    const auto volume = makeVolume({1, 1, 2}, Ids{Glass, Foil});
    expectVisibleFaces(*volume, {1, 1, 2}, {Glass, Foil});
    EXPECT_EQ(transparentCount(*volume), 12U);
}

TEST_F(TotalVolumePainterTest, NearlyClearCellsKeepAllTheirFaces)
{
    const Grid grid{3, 3, 3};
    const Ids ids(27, NearlyClear);
    const auto volume = makeVolume(grid, ids);
    expectVisibleFaces(*volume, grid, ids);
    EXPECT_EQ(transparentCount(*volume), 27U * 6U);
}

TEST_F(TotalVolumePainterTest, AlphaOfOneTenthStillCountsAsNearlyClear)
{
    const Grid grid{1, 1, 2};
    const Ids ids(2, Glass);
    setMaterial(Glass, {0.3f, 0.6f, 0.9f, 0.1f});
    const auto volume = makeVolume(grid, ids);
    expectVisibleFaces(*volume, grid, ids);
    EXPECT_EQ(transparentCount(*volume), 12U);

    setMaterial(Glass, {0.3f, 0.6f, 0.9f, std::nextafter(0.1f, 1.0f)});
    expectVisibleFaces(*volume, grid, ids);
    EXPECT_EQ(transparentCount(*volume), 10U);
}

TEST_F(TotalVolumePainterTest, AlphaFromItsLimitOnIsOpaque)
{
    const Grid grid{1, 1, 1};
    const auto volume = makeVolume(grid, Ids{Glass});
    setMaterial(Glass, {0.3f, 0.6f, 0.9f, 0.997f});
    expectVisibleFaces(*volume, grid, {Glass});
    EXPECT_EQ(opaqueCount(*volume), 6U);
    EXPECT_EQ(transparentCount(*volume), 0U);

    setMaterial(Glass, {0.3f, 0.6f, 0.9f, std::nextafter(0.997f, 0.0f)});
    expectVisibleFaces(*volume, grid, {Glass});
    EXPECT_EQ(opaqueCount(*volume), 0U);
    EXPECT_EQ(transparentCount(*volume), 6U);
}

TEST_F(TotalVolumePainterTest, CellDrawnAsOpaqueMayHideNoNeighbour)
{
    const Grid grid{1, 1, 2};
    const Ids ids{Red, AlmostOpaque};
    const auto volume = makeVolume(grid, ids);
    expectVisibleFaces(*volume, grid, ids);
    // The other one is hidden by its opaque neighbour.
    EXPECT_EQ(opaqueCount(*volume), 11U);

    const Ids alike(2, AlmostOpaque);
    const auto alikeVolume = makeVolume(grid, alike);
    expectVisibleFaces(*alikeVolume, grid, alike);
    EXPECT_EQ(opaqueCount(*alikeVolume), 12U);
}

TEST_F(TotalVolumePainterTest, AlphaHidesNeighboursOnlyAboveItsLimit)
{
    const Grid grid{1, 1, 2};
    const Ids ids{Red, AlmostOpaque};
    const auto volume = makeVolume(grid, ids);
    setMaterial(AlmostOpaque, {0.2f, 0.7f, 0.2f, 0.999f});
    expectVisibleFaces(*volume, grid, ids);
    EXPECT_EQ(opaqueCount(*volume), 11U);

    setMaterial(AlmostOpaque, {0.2f, 0.7f, 0.2f, std::nextafter(0.999f, 1.0f)});
    expectVisibleFaces(*volume, grid, ids);
    EXPECT_EQ(opaqueCount(*volume), 10U);
}

TEST_F(TotalVolumePainterTest, UnknownMaterialIsOpaqueGrey)
{
    const Grid grid{1, 1, 2};
    const Ids ids{Unknown, Red};
    const auto volume = makeVolume(grid, ids);
    expectVisibleFaces(*volume, grid, ids);
    EXPECT_EQ(opaqueCount(*volume), 10U);
    EXPECT_EQ(firstColor(*volume), unknownColor);
}

TEST_F(TotalVolumePainterTest, IdsThatDifferInTheirHighBitsOnlyAreDifferentMaterials)
{
    // 70 and 65606 agree in their lower 16 bits.
    setMaterial(65606, {0.3f, 0.3f, 0.3f, 0.5f});
    expectVisibleFaces({2, 1, 2}, {Red, 65606, 65606, LargestId});
    expectVisibleFaces({1, 1, 4}, {Red, Red + 256, Red + 65536 * 2, LargestId});
}

TEST_F(TotalVolumePainterTest, CornersAreWholeMultiplesOfTheCellSize)
{
    // Sums of 0.35 would drift away from these products.
    const Grid grid{11, 11, 11, 1.0f, 1.0f, 0.35f};
    const auto volume = makeVolume(grid, Ids(grid.cells(), Red));
    volume->painter().rebuild();
    float highest = 0;
    volume->painter().opaqueFaces().forEach([&](const QuadFace &face) {
        for (const auto &vertex : face.vertices)
            highest = std::max(highest, vertex[2]);
    });
    EXPECT_EQ(highest, 11.0f * 0.35f);
    expectVisibleFaces(*volume, grid, Ids(grid.cells(), Red));
}

TEST_F(TotalVolumePainterTest, FacesDoNotDependOnThePosition)
{
    const Grid grid{2, 2, 2};
    const Ids ids(8, Red);
    TotalVolume volume(2, 2, 2, 1, 1, 1, Util::Vector3D(10, 20, 30), ids);
    expectVisibleFaces(volume, grid, ids);
}

TEST_F(TotalVolumePainterTest, CutClosesTheSolidWithFaces)
{
    const Grid grid{6, 7, 8};
    const Ids ids(grid.cells(), Red);
    const auto volume = makeVolume(grid, ids);
    volume->painter().setCutLimits({1, 2, 3}, {5, 5, 5});
    expectVisibleFaces(*volume, grid, ids);
    EXPECT_EQ(opaqueCount(*volume), 2U * (4 * 3 + 3 * 2 + 4 * 2));
}

TEST_F(TotalVolumePainterTest, CutClosesTransparentFilmsToo)
{
    const Grid grid{6, 7, 8};
    const Ids ids(grid.cells(), Glass);
    const auto volume = makeVolume(grid, ids);
    volume->painter().setCutLimits({1, 2, 3}, {5, 5, 5});
    expectVisibleFaces(*volume, grid, ids);
    EXPECT_EQ(transparentCount(*volume), 2U * (4 * 3 + 3 * 2 + 4 * 2));
}

TEST_F(TotalVolumePainterTest, CutOfOneColumnShowsBothItsXFaces)
{
    const Grid grid{6, 2, 2};
    const Ids ids(grid.cells(), Red);
    const auto volume = makeVolume(grid, ids);
    for (int threads = 1; threads <= 5; ++threads) {
        SCOPED_TRACE(testing::Message() << threads << " threads");
        const PoolThreads pool(threads);
        volume->painter().setCutLimits({3, 0, 0}, {4, 2, 2});
        expectVisibleFaces(*volume, grid, ids);
        std::map<float, int> facesAtX;
        volume->painter().opaqueFaces().forEach([&](const QuadFace &face) {
            if (face.normal[0] != 0)
                ++facesAtX[face.vertices[0][0] * 10 + face.normal[0]];
        });
        EXPECT_EQ(facesAtX, (std::map<float, int>{{29.0f, 4}, {41.0f, 4}}));
    }
}

TEST_F(TotalVolumePainterTest, CutWithoutCellsShowsNothing)
{
    const Grid grid{3, 3, 3};
    const auto volume = makeVolume(grid, Ids(27, Red));
    volume->painter().setShowEmptyVoxels(true);
    volume->painter().rebuild();
    ASSERT_EQ(opaqueCount(*volume), 54U);
    for (unsigned axis = 0; axis < 3; ++axis) {
        SCOPED_TRACE(axis);
        CutLimits cut = wholeOf(grid);
        cut.lower[axis] = 2;
        cut.upper[axis] = 2;
        volume->painter().setCutLimits(cut.lower, cut.upper);
        volume->painter().rebuild();
        EXPECT_EQ(opaqueCount(*volume), 0U);
        EXPECT_TRUE(volume->painter().emptyFaces().empty());
    }
}

TEST_F(TotalVolumePainterTest, CutThatEndsBeforeItBeginsShowsNothing)
{
    const Grid grid{5, 5, 5};
    const auto volume = makeVolume(grid, Ids(125, Red));
    for (unsigned axis = 0; axis < 3; ++axis) {
        for (const int threads : {1, 4}) {
            SCOPED_TRACE(testing::Message() << "axis " << axis << ", " << threads << " threads");
            const PoolThreads pool(threads);
            CutLimits cut = wholeOf(grid);
            cut.lower[axis] = 4;
            cut.upper[axis] = 2;
            volume->painter().setCutLimits(cut.lower, cut.upper);
            volume->painter().setShowEmptyVoxels(true);
            volume->painter().rebuild();
            EXPECT_EQ(opaqueCount(*volume), 0U);
            EXPECT_TRUE(volume->painter().emptyFaces().empty());
        }
    }
}

TEST_F(TotalVolumePainterTest, LimitsBeyondTheVolumeAreKeptAndEverySurfaceEndsAtTheVolume)
{
    constexpr std::uint32_t Most = LargestId;
    const Grid grid{5, 4, 6};
    const Ids ids = Support::materialsBy(
        grid, [](std::uint32_t x, std::uint32_t y, std::uint32_t z) -> std::uint32_t {
            return z == 5 ? 0 : (x + y) % 3 == 0 ? Glass : Red;
        });
    // As they are set, and what of the volume lies in them.
    struct Cut
    {
        CutLimits limits;
        CutLimits inside;
    };
    // The last shows the whole volume.
    const Cut cuts[] = {{{{1, 0, 2}, {6, 4, 6}}, {{1, 0, 2}, {5, 4, 6}}},
                        {{{1, 0, 2}, {4, 5, 6}}, {{1, 0, 2}, {4, 4, 6}}},
                        {{{0, 1, 1}, {5, 3, 70}}, {{0, 1, 1}, {5, 3, 6}}},
                        {{{5, 0, 0}, {9, 4, 6}}, {{5, 0, 0}, {5, 4, 6}}},
                        {{{0, 7, 0}, {5, 9, 6}}, {{0, 4, 0}, {5, 4, 6}}},
                        {{{0, 0, Most - 1}, {5, 4, Most}}, {{0, 0, 6}, {5, 4, 6}}},
                        {{{0, 0, 0}, {Most, Most, Most}}, {{0, 0, 0}, {5, 4, 6}}}};
    const auto volume = makeVolume(grid, ids);
    const auto inside = makeVolume(grid, ids);
    const auto rebuild = [](TotalVolumePainter &painter, std::uint32_t algorithm,
                            const CutLimits &cut) {
        painter.setSurfaceAlgorithm(algorithm);
        painter.setShowEmptyVoxels(true);
        painter.setCutLimits(cut.lower, cut.upper);
        painter.rebuild();
    };
    TotalVolumePainter &painter = volume->painter();
    TotalVolumePainter &expected = inside->painter();
    for (const int threads : {1, 3}) {
        const PoolThreads pool(threads);
        for (const std::uint32_t algorithm : {0U, 1U, 2U}) {
            for (const Cut &cut : cuts) {
                SCOPED_TRACE(testing::Message() << threads << " threads, algorithm " << algorithm
                                                << ", cut " << &cut - cuts);
                rebuild(painter, algorithm, cut.limits);
                rebuild(expected, algorithm, cut.inside);
                const Faces faces = visibleFaces(grid, ids, cut.inside);
                const Voxel *cells = cellsOf(*volume);
                EXPECT_TRUE(agree(painter.opaqueFaces(), faces.opaque, cells));
                EXPECT_TRUE(agree(painter.transparentFaces(), faces.transparent, cells));
                EXPECT_TRUE(
                    agree(painter.emptyFaces(), emptyCellFaces(grid, ids, cut.inside), cells));
                EXPECT_EQ(painter.octree().root().size, expected.octree().root().size);
                EXPECT_EQ(painter.octree().opaqueFaces().size(),
                          expected.octree().opaqueFaces().size());
                EXPECT_EQ(painter.octree().transparentFaces().size(),
                          expected.octree().transparentFaces().size());
                EXPECT_EQ(painter.marchingCubes().triangles().size(),
                          expected.marchingCubes().triangles().size());
                CutLimits kept;
                painter.cutLimits(kept.lower, kept.upper);
                EXPECT_EQ(kept.lower, cut.limits.lower);
                EXPECT_EQ(kept.upper, cut.limits.upper);
            }
            EXPECT_GT(opaqueCount(*volume), 0U);
            EXPECT_EQ(painter.emptyFaces().size(), 5U * 4U * 6U);
        }
    }
    EXPECT_FALSE(painter.octree().opaqueFaces().empty());
    EXPECT_FALSE(painter.marchingCubes().triangles().empty());
}

TEST_F(TotalVolumePainterTest, SettingTheCutRebuildsNothing)
{
    const Grid grid{4, 4, 4};
    const Ids ids(64, Red);
    const auto volume = makeVolume(grid, ids);
    volume->painter().rebuild();
    volume->painter().setCutLimits({1, 1, 1}, {2, 3, 4});
    EXPECT_EQ(opaqueCount(*volume), 96U);
    CellTriple lower{};
    CellTriple upper{};
    volume->painter().cutLimits(lower, upper);
    EXPECT_EQ(lower, (CellTriple{1, 1, 1}));
    EXPECT_EQ(upper, (CellTriple{2, 3, 4}));
    expectVisibleFaces(*volume, grid, ids);
}

TEST_F(TotalVolumePainterTest, VolumesOneCellThickShowBothTheirSides)
{
    for (const Grid &grid : {Grid{1, 6, 5}, Grid{6, 1, 5}, Grid{6, 5, 1}}) {
        for (const std::uint32_t id : {Red, Glass}) {
            SCOPED_TRACE(testing::Message() << grid.sizeX << " x " << grid.sizeY << " x "
                                            << grid.sizeZ << " of material " << id);
            const Ids ids(30, id);
            const auto volume = makeVolume(grid, ids);
            expectVisibleFaces(*volume, grid, ids);
            EXPECT_EQ(opaqueCount(*volume) + transparentCount(*volume), 60U + 10U + 12U);
        }
    }
}

TEST_F(TotalVolumePainterTest, ListsRunThroughXThenYThenZWhateverTheThreads)
{
    const Grid grid{23, 9, 11};
    const Ids ids = idsInTurn(grid, {0, Red, Blue, Blue, Glass, Red, AlmostOpaque});
    const auto volume = makeVolume(grid, ids);
    for (int threads = 1; threads <= 5; ++threads) {
        SCOPED_TRACE(testing::Message() << threads << " threads");
        const PoolThreads pool(threads);
        expectVisibleFaces(*volume, grid, ids);
        for (const FaceList *list :
             {&volume->painter().opaqueFaces(), &volume->painter().transparentFaces()}) {
            const std::vector<QuadFace> faces = facesOf(*list);
            EXPECT_TRUE(std::is_sorted(faces.begin(), faces.end(),
                                       [](const QuadFace &left, const QuadFace &right) {
                                           return left.voxel < right.voxel;
                                       }));
        }
    }
}

TEST_F(TotalVolumePainterTest, RandomVolumesAgreeWithTheRules)
{
    // Alphas at, just beside and between the limits.
    const std::vector<float> alphas = {1.0f,   std::nextafter(0.999f, 1.0f),
                                       0.999f, std::nextafter(0.999f, 0.0f),
                                       0.998f, std::nextafter(0.997f, 1.0f),
                                       0.997f, std::nextafter(0.997f, 0.0f),
                                       0.5f,   std::nextafter(0.1f, 1.0f),
                                       0.1f,   std::nextafter(0.1f, 0.0f),
                                       0.05f,  0.0f};
    Ids palette{0, 0, 0, 1, 3, Unknown, Unknown + 1, LargestId};
    for (std::size_t i = 0; i < alphas.size(); ++i) {
        const auto id = static_cast<std::uint32_t>(i % 2 ? 1000 + i : 3000000000U + i);
        setMaterial(id, {0.05f * static_cast<float>(i), 0.3f, 0.2f, alphas[i]});
        palette.push_back(id);
    }

    for (unsigned seed = 1; seed <= 600; ++seed) {
        std::mt19937 random(seed);
        Grid grid{1 + std::uint32_t(random() % 14), 1 + std::uint32_t(random() % 12),
                  1 + std::uint32_t(random() % 16)};
        if (seed % 2)
            grid.cellSizeZ = 0.35f;
        if (seed % 5 == 0)
            (seed % 3 == 0 ? grid.sizeX : seed % 3 == 1 ? grid.sizeY : grid.sizeZ) = 1;
        const int threads = 1 + static_cast<int>(random() % 5);
        const Ids ids = randomIds(random, grid, palette);
        const CutLimits cut = random() % 3 ? randomCut(random, grid) : wholeOf(grid);
        SCOPED_TRACE(testing::Message()
                     << "seed " << seed << ": " << grid.sizeX << " x " << grid.sizeY << " x "
                     << grid.sizeZ << ", " << threads << " threads, cut from (" << cut.lower[0]
                     << ", " << cut.lower[1] << ", " << cut.lower[2] << ") to (" << cut.upper[0]
                     << ", " << cut.upper[1] << ", " << cut.upper[2] << ")");
        const PoolThreads pool(threads);
        const auto volume = makeVolume(grid, ids);
        volume->painter().setCutLimits(cut.lower, cut.upper);
        volume->painter().setShowEmptyVoxels(true);
        expectVisibleFaces(*volume, grid, ids);
        EXPECT_TRUE(
            agree(volume->painter().emptyFaces(), emptyCellFaces(grid, ids, cut), cellsOf(*volume)))
            << "empty";
        if (HasFailure())
            return;
    }
}

TEST_F(TotalVolumePainterTest, TallRandomVolumesAgreeWithTheRules)
{
    const Ids palette{0, 0, Red, Blue, Glass, Foil, NearlyClear, AlmostOpaque, Unknown};
    unsigned seed = 1000;
    for (const std::uint32_t sizeZ :
         {31, 32, 33, 63, 64, 65, 66, 127, 128, 129, 191, 192, 193, 200, 256, 300}) {
        for (const bool cutting : {false, true, true}) {
            ++seed;
            std::mt19937 random(seed);
            const Grid grid{1 + std::uint32_t(random() % 6),
                            1 + std::uint32_t(random() % 5),
                            sizeZ,
                            1.0f,
                            1.0f,
                            0.35f};
            const int threads = 1 + static_cast<int>(random() % 5);
            const Ids ids = randomIds(random, grid, palette);
            CutLimits cut = cutting ? randomCut(random, grid) : wholeOf(grid);
            if (cutting)
                cut.upper[0] = grid.sizeX;
            SCOPED_TRACE(testing::Message()
                         << "seed " << seed << ": " << grid.sizeX << " x " << grid.sizeY << " x "
                         << grid.sizeZ << ", " << threads << " threads, cut of z from "
                         << cut.lower[2] << " to " << cut.upper[2]);
            const PoolThreads pool(threads);
            const auto volume = makeVolume(grid, ids);
            volume->painter().setCutLimits(cut.lower, cut.upper);
            expectVisibleFaces(*volume, grid, ids);
            if (HasFailure())
                return;
        }
    }
}

TEST_F(TotalVolumePainterTest, TallBlocksCutAtEveryHeightShowTheirSkin)
{
    const Grid grid{2, 2, 140};
    for (const std::uint32_t id : {Red, Glass, NearlyClear}) {
        const Ids ids(grid.cells(), id);
        const auto volume = makeVolume(grid, ids);
        for (const std::uint32_t lower : {0, 1, 62, 63, 64, 65, 126, 127, 128, 129, 139}) {
            for (const std::uint32_t height : {1, 2, 63, 64, 65, 140}) {
                const std::uint32_t upper = std::min(lower + height, grid.sizeZ);
                SCOPED_TRACE(testing::Message()
                             << "material " << id << ", z from " << lower << " to " << upper);
                volume->painter().setCutLimits({0, 0, lower}, {2, 2, upper});
                expectVisibleFaces(*volume, grid, ids);
                if (id != NearlyClear) {
                    EXPECT_EQ(opaqueCount(*volume) + transparentCount(*volume),
                              8U + 8U * (upper - lower));
                }
            }
        }
    }
}

TEST_F(TotalVolumePainterTest, SingleCellIsFoundAtAnyPlaceOfATallColumn)
{
    const Grid grid{1, 1, 200};
    const auto volume = makeVolume(grid, Ids(200, 0));
    for (std::uint32_t z = 0; z < 200; ++z) {
        SCOPED_TRACE(z);
        Ids ids(200, 0);
        ids[z] = Red;
        volume->voxels()[z].setMaterial(Red);
        volume->releaseVoxels();
        expectVisibleFaces(*volume, grid, ids);
        volume->voxels()[z].setMaterial(0);
        volume->releaseVoxels();
    }
}

TEST_F(TotalVolumePainterTest, ThousandsOfFacesInEveryStripStayInOrder)
{
    // Each cell of this pattern stands alone, with all its faces.
    const Grid grid{17, 12, 13};
    const Ids ids = Support::materialsBy(grid, [](auto x, auto y, auto z) -> std::uint32_t {
        return (x + y + z) % 2 ? 0 : (x % 3 ? Red : Glass);
    });
    const auto volume = makeVolume(grid, ids);
    for (int threads = 1; threads <= 5; ++threads) {
        SCOPED_TRACE(testing::Message() << threads << " threads");
        const PoolThreads pool(threads);
        expectVisibleFaces(*volume, grid, ids);
        EXPECT_EQ(opaqueCount(*volume) + transparentCount(*volume), 6U * 1326U);
    }
}

TEST_F(TotalVolumePainterTest, RebuildingReplacesTheFaces)
{
    const Grid grid{2, 2, 2};
    const auto volume = makeVolume(grid, Ids(8, Red));
    expectVisibleFaces(*volume, grid, Ids(8, Red));
    expectVisibleFaces(*volume, grid, Ids(8, Red));
    for (unsigned i = 0; i < 8; ++i) {
        volume->voxels()[i].setMaterial(i % 2 ? Glass : 0);
        volume->releaseVoxels();
    }
    expectVisibleFaces(*volume, grid, {0, Glass, 0, Glass, 0, Glass, 0, Glass});
    EXPECT_EQ(opaqueCount(*volume), 0U);
}

TEST_F(TotalVolumePainterTest, RebuildingTakesTheColorsOfTheRegistryAsTheyAreThen)
{
    const Grid grid{1, 1, 2};
    const Ids ids{Red, Blue};
    const auto volume = makeVolume(grid, ids);
    expectVisibleFaces(*volume, grid, ids);
    setMaterial(Blue, {0.3f, 0.4f, 0.5f, 0.6f});
    expectVisibleFaces(*volume, grid, ids);
    EXPECT_EQ(transparentCount(*volume), 6U);
    m_registry->loadDefaultMaterials();
    expectVisibleFaces(*volume, grid, ids);
    EXPECT_EQ(firstColor(*volume), unknownColor);
    EXPECT_EQ(opaqueCount(*volume), 10U);
}

TEST_F(TotalVolumePainterTest, WithFewerColumnsThanThreadsTheSurfaceIsBuiltOnTheCallingThread)
{
    const Grid grid{6, 4, 4};
    const Ids ids(grid.cells(), Red);
    const PoolThreads pool(4);
    const auto volume = makeVolume(grid, ids);
    volume->painter().setCutLimits({1, 0, 0}, {4, 4, 4});
    EXPECT_FALSE(usesPoolThreads([&] { expectVisibleFaces(*volume, grid, ids); }));
    volume->painter().setCutLimits({1, 0, 0}, {5, 4, 4});
    EXPECT_TRUE(usesPoolThreads([&] { expectVisibleFaces(*volume, grid, ids); }));
}

TEST_F(TotalVolumePainterTest, EmptyCellsOfFewColumnsAreStillOutlinedOnAPoolThread)
{
    const PoolThreads pool(4);
    const auto volume = makeVolume({3, 2, 2}, Ids(12, 0));
    EXPECT_FALSE(usesPoolThreads([&] { volume->painter().rebuild(); }));
    volume->painter().setShowEmptyVoxels(true);
    EXPECT_TRUE(usesPoolThreads([&] { volume->painter().rebuild(); }));
    EXPECT_EQ(volume->painter().emptyFaces().size(), 72U);
}

TEST_F(TotalVolumePainterTest, RebuildingWaitsForTheCells)
{
    const auto volume = makeVolume({}, Ids{Red});
    Voxel *cells = volume->voxels();
    std::future<void> rebuilding =
        std::async(std::launch::async, [&] { volume->painter().rebuild(); });
    EXPECT_EQ(rebuilding.wait_for(std::chrono::milliseconds(50)), std::future_status::timeout);
    cells[0].setMaterial(Glass);
    volume->releaseVoxels();
    rebuilding.get();
    EXPECT_EQ(transparentCount(*volume), 6U);
}

TEST_F(TotalVolumePainterTest, RebuildingLeavesTheWorkingBufferAloneAndGivesTheCellsBack)
{
    const auto volume = makeVolume({4, 1, 1}, Ids(4, Red));
    volume->nextVoxels();
    volume->painter().setShowEmptyVoxels(true);
    std::future<void> rebuilding = std::async(std::launch::async, [&] {
        volume->painter().rebuild();
        volume->voxels();
        volume->releaseVoxels();
    });
    const bool done = rebuilding.wait_for(std::chrono::seconds(5)) == std::future_status::ready;
    EXPECT_TRUE(done);
    if (!done) {
        volume->releaseNextVoxels();
        volume->releaseVoxels();
    }
    rebuilding.get();
}

TEST_F(TotalVolumePainterTest, AfterASwapFacesPointIntoTheOtherArrayUntilTheNextRebuild)
{
    const Grid grid{1, 1, 2};
    const auto volume = makeVolume(grid, Ids{Red, Glass});
    volume->painter().rebuild();
    const Voxel *cells = volume->voxels();
    const Voxel *nextCells = volume->nextVoxels();
    volume->swapVoxels();
    volume->releaseNextVoxels();
    volume->releaseVoxels();

    const Faces expected = visibleFaces(grid, {Red, Glass}, wholeOf(grid));
    EXPECT_TRUE(agree(volume->painter().opaqueFaces(), expected.opaque, cells));
    volume->painter().refreshColors();
    EXPECT_TRUE(agree(volume->painter().opaqueFaces(), expected.opaque, cells));
    volume->painter().rebuild();
    EXPECT_TRUE(agree(volume->painter().opaqueFaces(), expected.opaque, nextCells));
    EXPECT_TRUE(agree(volume->painter().transparentFaces(), expected.transparent, nextCells));
}

TEST_F(TotalVolumePainterTest, RefreshingGivesTheFacesTheColorsOfTheRegistry)
{
    const Grid grid{5, 4, 3};
    const Ids ids = idsInTurn(grid, {0, Red, Blue, Glass, Foil, Unknown, 4});
    const auto volume = makeVolume(grid, ids);
    volume->painter().rebuild();
    const Faces built = visibleFaces(grid, ids, wholeOf(grid));
    // The new alphas would change lists and faces in a rebuild.
    setMaterial(Red, {0.1f, 0.2f, 0.3f, 0.4f});
    setMaterial(Glass, {0.4f, 0.3f, 0.2f, 1.0f});
    setMaterial(Unknown, {0.6f, 0.6f, 0.1f, 1.0f});
    volume->painter().refreshColors();

    const auto present = [&](const Face &face) { return registryColor(ids[face.cell]); };
    const Voxel *cells = cellsOf(*volume);
    EXPECT_TRUE(agree(volume->painter().opaqueFaces(), recolored(built.opaque, present), cells));
    EXPECT_TRUE(
        agree(volume->painter().transparentFaces(), recolored(built.transparent, present), cells));
}

TEST_F(TotalVolumePainterTest, RefreshingReadsTheMaterialThroughTheCell)
{
    const auto volume = makeVolume({}, Ids{Red});
    volume->painter().rebuild();
    volume->voxels()[0].setMaterial(Glass);
    volume->releaseVoxels();
    volume->painter().refreshColors();
    EXPECT_EQ(opaqueCount(*volume), 6U);
    EXPECT_EQ(firstColor(*volume), registryColor(Glass));
    volume->voxels()[0].setMaterial(Unknown);
    volume->releaseVoxels();
    volume->painter().refreshColors();
    EXPECT_EQ(firstColor(*volume), unknownColor);
}

TEST_F(TotalVolumePainterTest, RefreshingLeavesEmptyCellsAsTheyAre)
{
    const auto volume = makeVolume({}, Ids{0});
    volume->painter().setShowEmptyVoxels(true);
    volume->painter().rebuild();
    volume->painter().refreshColors();
    EXPECT_EQ(firstColor(volume->painter().emptyFaces()), emptyColor);
    volume->setSelected(true);
    volume->painter().refreshColors();
    EXPECT_EQ(firstColor(volume->painter().emptyFaces()), emptyColor);
}

TEST_F(TotalVolumePainterTest, RefreshingHighlightsTheFacesOfASelectedVolume)
{
    const Grid grid{5, 4, 3};
    const Ids ids = idsInTurn(grid, {0, Red, Blue, Glass, Foil, Unknown, 4, 5, 13});
    const auto volume = makeVolume(grid, ids);
    volume->painter().rebuild();
    volume->setSelected(true);
    volume->painter().refreshColors();
    const Faces built = visibleFaces(grid, ids, wholeOf(grid));
    const auto highlight = [](const Face &face) { return highlighted(face.color); };
    const Voxel *cells = cellsOf(*volume);
    EXPECT_TRUE(agree(volume->painter().opaqueFaces(), recolored(built.opaque, highlight), cells));
    EXPECT_TRUE(agree(volume->painter().transparentFaces(), recolored(built.transparent, highlight),
                      cells));
}

TEST_F(TotalVolumePainterTest, HighlightComparesAndAddsInDouble)
{
    // The float nearest to 0.7 lies below it, the next one above.
    const float below = 0.7f;
    const float above = std::nextafter(0.7f, 1.0f);
    ASSERT_LT(double{below}, 0.7);
    ASSERT_GT(double{above}, 0.7);
    const float dark = 0.4f;
    ASSERT_NE(dark + 0.3f, static_cast<float>(double{dark} + 0.3));
    setMaterial(Red, {below, above, dark, 0.9999f});
    const auto volume = makeVolume({}, Ids{Red});
    volume->painter().rebuild();
    volume->setSelected(true);
    volume->painter().refreshColors();
    EXPECT_EQ(firstColor(*volume), (Color{static_cast<float>(double{below} + 0.3),
                                          static_cast<float>(double{above} - 0.7),
                                          static_cast<float>(double{dark} + 0.3), 0.9999f}));
}

TEST_F(TotalVolumePainterTest, HighlightTakesFromBrightChannelsAndAddsToDarkOnes)
{
    setMaterial(Red, {1.0f, 0.0f, 0.5f, 1.0f});
    const auto volume = makeVolume({}, Ids{Red});
    volume->painter().rebuild();
    volume->setSelected(true);
    volume->painter().refreshColors();
    const Color color = firstColor(*volume);
    EXPECT_FLOAT_EQ(color[0], 0.3f);
    EXPECT_FLOAT_EQ(color[1], 0.3f);
    EXPECT_FLOAT_EQ(color[2], 0.8f);
    EXPECT_EQ(color[3], 1.0f);
}

TEST_F(TotalVolumePainterTest, RefreshingASelectedVolumeAgainHighlightsItsFacesAsTheyAre)
{
    // 0.5 goes to 0.8 and then to 0.1.
    setMaterial(Red, {0.5f, 0.5f, 0.5f, 1.0f});
    const auto volume = makeVolume({}, Ids{Red});
    volume->painter().rebuild();
    volume->setSelected(true);
    volume->painter().refreshColors();
    const Color once = highlighted({0.5f, 0.5f, 0.5f, 1.0f});
    EXPECT_EQ(firstColor(*volume), once);
    volume->painter().refreshColors();
    EXPECT_EQ(firstColor(*volume), highlighted(once));
}

TEST_F(TotalVolumePainterTest, WithAnotherAlgorithmRefreshingLeavesTheFaces)
{
    for (const std::uint32_t algorithm :
         {TotalVolumePainter::MarchingCubes, TotalVolumePainter::Octree}) {
        SCOPED_TRACE(algorithm);
        setMaterial(Red, {0.9f, 0.1f, 0.2f, 1.0f});
        const auto volume = makeVolume({}, Ids{Red});
        volume->painter().setSurfaceAlgorithm(algorithm);
        EXPECT_EQ(firstColor(*volume), (Color{0.9f, 0.1f, 0.2f, 1.0f}));
        setMaterial(Red, {0.1f, 0.1f, 0.1f, 1.0f});
        volume->painter().refreshColors();
        EXPECT_EQ(firstColor(*volume), (Color{0.9f, 0.1f, 0.2f, 1.0f}));
    }
}

TEST_F(TotalVolumePainterTest, AnotherAlgorithmIsKeptAndRebuildsTheDirectFacesAtOnce)
{
    const Grid grid{2, 1, 1};
    const auto volume = makeVolume(grid, Ids{Red, 0});
    volume->painter().setShowEmptyVoxels(true);
    for (const std::uint32_t algorithm :
         {TotalVolumePainter::MarchingCubes, TotalVolumePainter::Octree,
          TotalVolumePainter::DirectCubic}) {
        SCOPED_TRACE(algorithm);
        const std::uint32_t id = Blue + algorithm;
        volume->voxels()[0].setMaterial(id);
        volume->releaseVoxels();
        volume->painter().setSurfaceAlgorithm(algorithm);
        EXPECT_EQ(volume->painter().surfaceAlgorithm(), algorithm);
        expectPresentFaces(*volume, grid, {id, 0});
        EXPECT_TRUE(volume->painter().emptyFaces().empty());
    }
}

TEST_F(TotalVolumePainterTest, SameAlgorithmRebuildsNothing)
{
    const auto volume = makeVolume({}, Ids{Red});
    volume->painter().setSurfaceAlgorithm(TotalVolumePainter::DirectCubic);
    EXPECT_EQ(opaqueCount(*volume), 0U);
    volume->painter().setSurfaceAlgorithm(TotalVolumePainter::Octree);
    EXPECT_EQ(opaqueCount(*volume), 6U);
    volume->voxels()[0].setMaterial(0);
    volume->releaseVoxels();
    volume->painter().setSurfaceAlgorithm(TotalVolumePainter::Octree);
    EXPECT_EQ(opaqueCount(*volume), 6U);
}

// The draws of these tests have no OpenGL context, so only the faces' colours tell of them.

TEST_F(TotalVolumePainterTest, SelectionShowsAtTheNextDrawWithoutARebuild)
{
    const Grid grid{2, 2, 2};
    const Ids ids{Red, Glass, Blue, 0, Red, Glass, Foil, Unknown};
    const auto volume = makeVolume(grid, ids);
    volume->painter().rebuild();
    volume->draw(true, false);
    const Faces built = visibleFaces(grid, ids, wholeOf(grid));
    const auto highlight = [](const Face &face) { return highlighted(face.color); };
    const Voxel *cells = cellsOf(*volume);

    volume->setSelected(true);
    EXPECT_TRUE(agree(volume->painter().opaqueFaces(), built.opaque, cells));
    for (int draws = 0; draws < 2; ++draws) {
        volume->draw(true, false);
        EXPECT_TRUE(
            agree(volume->painter().opaqueFaces(), recolored(built.opaque, highlight), cells));
        EXPECT_TRUE(agree(volume->painter().transparentFaces(),
                          recolored(built.transparent, highlight), cells));
    }

    volume->setSelected(false);
    volume->draw(true, false);
    EXPECT_TRUE(agree(volume->painter().opaqueFaces(), built.opaque, cells));
    EXPECT_TRUE(agree(volume->painter().transparentFaces(), built.transparent, cells));
}

TEST_F(TotalVolumePainterTest, DeselectingRestoresTheColorsFromTheRegistry)
{
    const auto volume = makeVolume({}, Ids{Red});
    volume->painter().rebuild();
    volume->draw(true, false);
    volume->setSelected(true);
    volume->draw(true, false);
    setMaterial(Red, {0.4f, 0.3f, 0.2f, 1.0f});
    volume->setSelected(false);
    volume->draw(true, false);
    EXPECT_EQ(firstColor(*volume), (Color{0.4f, 0.3f, 0.2f, 1.0f}));
}

TEST_F(TotalVolumePainterTest, OnlyTheFirstDrawBringsColorsInLineWithTheRegistry)
{
    const auto volume = makeVolume({}, Ids{Red});
    volume->painter().rebuild();
    setMaterial(Red, {0.4f, 0.3f, 0.2f, 1.0f});
    EXPECT_EQ(firstColor(*volume), (Color{0.9f, 0.1f, 0.2f, 1.0f}));
    volume->draw(true, false);
    EXPECT_EQ(firstColor(*volume), (Color{0.4f, 0.3f, 0.2f, 1.0f}));
    setMaterial(Red, {0.1f, 0.1f, 0.1f, 1.0f});
    volume->draw(true, false);
    EXPECT_EQ(firstColor(*volume), (Color{0.4f, 0.3f, 0.2f, 1.0f}));
}

TEST_F(TotalVolumePainterTest, DrawWithoutSolidsBringsColorsInLineToo)
{
    const auto volume = makeVolume({}, Ids{Red});
    volume->painter().rebuild();
    volume->draw(true, false);
    volume->setSelected(true);
    volume->draw(false, false);
    EXPECT_EQ(firstColor(*volume), highlighted(registryColor(Red)));
}

TEST_F(TotalVolumePainterTest, HiddenVolumeKeepsItsColorsUntilItIsShown)
{
    const auto volume = makeVolume({}, Ids{Red});
    volume->painter().rebuild();
    volume->draw(true, false);
    volume->painter().setHidden(true);
    volume->setSelected(true);
    volume->draw(true, false);
    EXPECT_EQ(firstColor(*volume), registryColor(Red));
    volume->painter().setHidden(false);
    volume->draw(true, false);
    EXPECT_EQ(firstColor(*volume), highlighted(registryColor(Red)));
}

TEST_F(TotalVolumePainterTest, DrawNeverRebuildsGeometry)
{
    const Grid grid{2, 1, 1};
    const auto volume = makeVolume(grid, Ids{Red, Red});
    volume->draw(true, true);
    EXPECT_EQ(opaqueCount(*volume), 0U);
    volume->painter().rebuild();
    volume->voxels()[0].setMaterial(0);
    volume->releaseVoxels();
    volume->setSelected(true);
    volume->draw(true, true);
    EXPECT_EQ(opaqueCount(*volume), 10U);
    EXPECT_TRUE(volume->painter().emptyFaces().empty());
}

TEST_F(TotalVolumePainterTest, RebuildingASelectedVolumeGivesPlainColorsUntilItsSelectionChanges)
{
    const auto volume = makeVolume({}, Ids{Red});
    volume->painter().rebuild();
    volume->draw(true, false);
    volume->setSelected(true);
    volume->draw(true, false);
    volume->painter().rebuild();
    EXPECT_EQ(firstColor(*volume), registryColor(Red));
    volume->draw(true, false);
    EXPECT_EQ(firstColor(*volume), registryColor(Red));
}

TEST_F(TotalVolumePainterTest, OnlyTheChosenSurfaceIsBuiltAndTheDirectFacesAlways)
{
    const auto volume = makeVolume({4, 4, 4}, Ids(64, Red));
    TotalVolumePainter &painter = volume->painter();
    const auto direct = [&] { return painter.opaqueFaces().size(); };
    painter.rebuild();
    EXPECT_EQ(direct(), 96U);
    EXPECT_TRUE(painter.marchingCubes().triangles().empty());
    EXPECT_TRUE(painter.octree().opaqueFaces().empty());

    painter.setSurfaceAlgorithm(TotalVolumePainter::Octree);
    EXPECT_TRUE(painter.octree().opaqueFaces().empty()) << "before the next rebuild";
    painter.rebuild();
    EXPECT_EQ(painter.octree().opaqueFaces().size(), 6U);
    EXPECT_TRUE(painter.marchingCubes().triangles().empty());
    EXPECT_EQ(direct(), 96U);

    painter.setSurfaceAlgorithm(TotalVolumePainter::MarchingCubes);
    painter.setCutLimits({0, 0, 0}, {4, 4, 2});
    painter.rebuild();
    EXPECT_FALSE(painter.marchingCubes().triangles().empty());
    EXPECT_EQ(direct(), 16U + 16U + 4 * 4 * 2);
    EXPECT_EQ(painter.octree().opaqueFaces().size(), 6U) << "neither built nor freed";
}

TEST_F(TotalVolumePainterTest, SurfacesAreBuiltWithinTheCut)
{
    const auto volume = makeVolume({8, 8, 8}, Ids(512, Red));
    TotalVolumePainter &painter = volume->painter();
    painter.setCutLimits({1, 2, 3}, {5, 6, 7});
    painter.setSurfaceAlgorithm(TotalVolumePainter::Octree);
    painter.rebuild();
    EXPECT_EQ(painter.octree().root().x, 1U);
    EXPECT_EQ(painter.octree().root().y, 2U);
    EXPECT_EQ(painter.octree().root().z, 3U);
    EXPECT_EQ(painter.octree().root().size, 4U);
    painter.setSurfaceAlgorithm(TotalVolumePainter::MarchingCubes);
    painter.rebuild();
    // Void up to the lowest cells, filled up to the cells at the upper limits.
    const float low[3] = {1.5f, 2.5f, 3.5f};
    const float high[3] = {5.5f, 6.5f, 7.5f};
    for (unsigned axis = 0; axis < 3; ++axis) {
        float least = 100;
        float most = -100;
        for (const auto &triangle : painter.marchingCubes().triangles()) {
            for (const auto &vertex : triangle.vertices) {
                least = std::min(least, vertex.position[axis]);
                most = std::max(most, vertex.position[axis]);
            }
        }
        EXPECT_EQ(least, low[axis]);
        EXPECT_EQ(most, high[axis]);
    }
}

TEST_F(TotalVolumePainterTest, RefreshingColorsReachesTheOctreeOnlyWhileItIsChosen)
{
    const auto volume = makeVolume({2, 2, 2}, Ids(8, Red));
    TotalVolumePainter &painter = volume->painter();
    const auto octreeColor = [&] {
        Color color{};
        painter.octree().opaqueFaces().forEach([&](const QuadFace &face) {
            std::copy(std::begin(face.color), std::end(face.color), color.begin());
        });
        return color;
    };
    painter.setSurfaceAlgorithm(TotalVolumePainter::Octree);
    painter.rebuild();
    const Color before = octreeColor();
    EXPECT_EQ(before, registryColor(Red));
    setMaterial(Red, {0.4f, 0.3f, 0.2f, 1.0f});
    painter.refreshColors();
    EXPECT_EQ(octreeColor(), registryColor(Red));
    EXPECT_EQ(firstColor(*volume), before) << "direct faces are left alone meanwhile";

    painter.setSurfaceAlgorithm(TotalVolumePainter::DirectCubic);
    setMaterial(Red, {0.1f, 0.1f, 0.1f, 1.0f});
    painter.refreshColors();
    EXPECT_EQ(octreeColor(), (Color{0.4f, 0.3f, 0.2f, 1.0f}));
    EXPECT_EQ(firstColor(*volume), registryColor(Red));
}

TEST_F(TotalVolumePainterTest, EverythingIsSafeWithoutAnOpenGlContext)
{
    for (const std::uint32_t algorithm : {0U, 1U, 2U}) {
        const auto volume = makeVolume({3, 3, 3}, Ids(27, 1));
        volume->rebuildSiLattice();
        volume->setTopMask(std::vector<bool>(9, true), 3, 3);
        TotalVolumePainter &painter = volume->painter();
        painter.setShowEmptyVoxels(true);
        painter.setSurfaceAlgorithm(algorithm);
        painter.setRenderUnitCells(true);
        painter.setRenderOutlines(true);
        painter.setRenderAtoms(true);
        painter.setRenderLinks(true);
        painter.rebuild();
        EXPECT_FALSE(painter.renderUnitCells());
        EXPECT_FALSE(painter.renderOutlines());
        EXPECT_FALSE(painter.renderAtoms());
        EXPECT_FALSE(painter.renderLinks());
        EXPECT_TRUE(painter.surfaceAtomsOnly());
        EXPECT_EQ(opaqueCount(*volume), 54U);
        for (const bool selected : {true, false}) {
            volume->setSelected(selected);
            volume->draw(true, true);
            volume->draw(false, true);
            volume->drawForPicking();
            painter.refreshColors();
        }
        volume->clearTopMask();
        volume->draw(true, true);
    }
}

TEST_F(TotalVolumePainterTest, MaterialsOfNoRegistryAreBuiltAndRecoloredByEverySurface)
{
    for (const std::uint32_t algorithm : {0U, 1U, 2U}) {
        SCOPED_TRACE(algorithm);
        const auto volume = makeVolume({3, 3, 3}, Ids(27, Unknown));
        volume->painter().setSurfaceAlgorithm(algorithm);
        volume->painter().rebuild();
        volume->draw(true, true);
        volume->setSelected(true);
        volume->draw(true, true);
        volume->painter().refreshColors();
        if (algorithm == TotalVolumePainter::MarchingCubes) {
            EXPECT_FALSE(volume->painter().marchingCubes().triangles().empty());
        }
    }
}

TEST_F(TotalVolumePainterTest, EveryChangeOfAMaskGivesAnotherRevision)
{
    const auto volume = makeVolume({2, 2, 1}, Ids(4, Red));
    std::vector<std::uint32_t> revisions{volume->maskRevision()};
    volume->setTopMask({true}, 1, 1);
    revisions.push_back(volume->maskRevision());
    volume->setBottomMask({true}, 1, 1);
    revisions.push_back(volume->maskRevision());
    volume->clearTopMask();
    revisions.push_back(volume->maskRevision());
    volume->clearBottomMask();
    revisions.push_back(volume->maskRevision());
    std::sort(revisions.begin(), revisions.end());
    EXPECT_EQ(std::unique(revisions.begin(), revisions.end()), revisions.end());
}
