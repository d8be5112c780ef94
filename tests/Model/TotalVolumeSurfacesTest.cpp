#include "Model/Automaton/TotalVolume.h"
#include "Model/Automaton/TotalVolumePainter.h"
#include "Model/Document.h"
#include "Model/Materials/MaterialFactory.h"

#include "GlTestSupport.h"
#include "Support/Volumes.h"

#include <boost/make_shared.hpp>

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <vector>

using Model::Document;
using Model::Automaton::TotalVolume;
using Model::Automaton::TotalVolumePainter;
using Model::Materials::Material;
using Model::Materials::MaterialFactory;
using Support::Grid;
using Support::materialsBy;
using Util::Vector3D;

namespace {

using Bits = std::vector<bool>;
using Ids = std::vector<std::uint32_t>;

constexpr std::uint32_t Red = 70;
constexpr std::uint32_t Blue = 71;
constexpr std::uint32_t Glass = 72;
constexpr std::uint32_t Thin = 73;
constexpr std::uint32_t Unknown = 4000000000U;

const GlTest::Color red{0.9, 0.1, 0.2};
const GlTest::Color highlightedRed{0.2, 0.4, 0.5};
const GlTest::Color blue{0.1, 0.2, 0.9};
const GlTest::Color black{0, 0, 0};
const GlTest::Rgba glass{0.3, 0.8, 0.4, 0.5};
const GlTest::Rgba mask{0.2, 0.8, 0.2, 0.3};

constexpr int SquareUnit = 100; // pixels
constexpr int AllPixels = GlCanvas::Side * GlCanvas::Side;
constexpr TotalVolumePainter::SurfaceAlgorithm Algorithms[] = {
    TotalVolumePainter::DirectCubic, TotalVolumePainter::MarchingCubes, TotalVolumePainter::Octree};

/// The pictures of the three surfaces through a document, as the 3D view draws it.
class TotalVolumeSurfacesTest : public GlTest
{
protected:
    using VolumePtr = boost::shared_ptr<TotalVolume>;

    void SetUp() override
    {
        GlTest::SetUp();
        glDisable(GL_COLOR_MATERIAL);
        setMaterial(Red, {0.9f, 0.1f, 0.2f, 1.0f});
        setMaterial(Blue, {0.1f, 0.2f, 0.9f, 1.0f});
        setMaterial(Glass, {0.3f, 0.8f, 0.4f, 0.5f});
    }
    void TearDown() override
    {
        EXPECT_EQ(integer(GL_MODELVIEW_STACK_DEPTH), 1);
        MaterialFactory::instance()->loadDefaultMaterials();
        GlTest::TearDown();
    }

    static void setMaterial(std::uint32_t id, const std::array<float, 4> &color)
    {
        MaterialFactory::instance()->updateMaterial(
            Material(id, QStringLiteral("Test"), 1.0f, 1.0f, 1.0f, color.data()));
    }

    /// Adds a volume with its surface built.
    VolumePtr add(std::uint32_t algorithm, const Grid &grid, const Ids &ids,
                  const Vector3D &position = Vector3D())
    {
        const auto volume =
            boost::make_shared<TotalVolume>(grid.sizeX, grid.sizeY, grid.sizeZ, grid.cellSizeX,
                                            grid.cellSizeY, grid.cellSizeZ, position, ids);
        volume->painter().setSurfaceAlgorithm(algorithm);
        volume->painter().rebuild();
        m_document.addObject(volume);
        return volume;
    }
    VolumePtr addBlock(std::uint32_t algorithm, const Grid &grid, std::uint32_t id,
                       const Vector3D &position = Vector3D())
    {
        return add(algorithm, grid, Ids(grid.cells(), id), position);
    }

    void drawAll(bool edges = false)
    {
        draw([&] { m_document.draw(true, edges); });
    }

    /// White light from the viewer or from behind the scene.
    static void light(bool fromViewer)
    {
        const float none[4] = {0, 0, 0, 1};
        const float white[4] = {1, 1, 1, 1};
        const float direction[4] = {0, 0, fromViewer ? 1.0f : -1.0f, 0};
        glLightModelfv(GL_LIGHT_MODEL_AMBIENT, none);
        glPushMatrix();
        glLoadIdentity();
        glLightfv(GL_LIGHT0, GL_POSITION, direction);
        glPopMatrix();
        glLightfv(GL_LIGHT0, GL_AMBIENT, none);
        glLightfv(GL_LIGHT0, GL_DIFFUSE, white);
        glLightfv(GL_LIGHT0, GL_SPECULAR, none);
        glColorMaterial(GL_FRONT, GL_AMBIENT_AND_DIFFUSE);
        glEnable(GL_COLOR_MATERIAL);
        glEnable(GL_LIGHT0);
        glEnable(GL_LIGHTING);
    }

    Document m_document;
};

} // namespace

TEST_F(TotalVolumeSurfacesTest, SolidShowsItsColorAtItsPlace)
{
    for (const auto algorithm : Algorithms) {
        for (const Vector3D &place : {Vector3D(), Vector3D(-9, 3, 20)}) {
            SCOPED_TRACE(algorithm);
            m_document.reset();
            addBlock(algorithm, {6, 5, 4}, Red, place);
            drawAll();
            // The smooth skin lies half a cell further in.
            expectColorAt(place[0] + 1.25, place[1] + 1.25, 0, red);
            expectColorAt(place[0] + 4.75, place[1] + 3.75, 0, red);
            const Color rim = algorithm == TotalVolumePainter::MarchingCubes ? background() : red;
            expectColorAt(place[0] + 0.25, place[1] + 2.55, 0, rim);
            expectColorAt(place[0] + 5.75, place[1] + 2.55, 0, rim);
            expectColorAt(place[0] - 0.25, place[1] + 2.55, 0, background());
            expectColorAt(place[0] + 6.25, place[1] + 2.55, 0, background());
            look(FromFront);
            drawAll();
            expectColorAt(place[0] + 2.55, 0, place[2] > 12 ? 0 : 2.05,
                          place[2] > 12 ? background() : red);
            look(FromAbove);
        }
    }
}

TEST_F(TotalVolumeSurfacesTest, VolumesStandSideBySideWhateverTheirSurfaces)
{
    for (const auto first : Algorithms) {
        for (const auto second : Algorithms) {
            SCOPED_TRACE(testing::Message() << first << ", then " << second);
            m_document.reset();
            addBlock(first, {4, 4, 4}, Red, Vector3D(-8, 1, 0));
            addBlock(second, {4, 4, 4}, Blue, Vector3D(2, -7, 0));
            const auto other = boost::make_shared<RecordingObject>(5, 5);
            other->setColor({1, 1, 0, 1});
            m_document.addObject(other);
            const auto before = modelview();
            for (int draws = 0; draws < 3; ++draws) {
                drawAll(draws == 1);
                expectColorAt(-5.95, 3.05, 0, red);
                expectColorAt(4.05, -4.95, 0, blue);
                expectColorAt(5.5, 5.5, 0, {1, 1, 0});
                EXPECT_EQ(pixelsOf({1, 1, 0}), SquareUnit);
                EXPECT_EQ(modelview(), before);
                EXPECT_EQ(integer(GL_MODELVIEW_STACK_DEPTH), 1);
            }
        }
    }
}

TEST_F(TotalVolumeSurfacesTest, SurfacesAreLitByTheirNormals)
{
    for (const auto algorithm : Algorithms) {
        SCOPED_TRACE(algorithm);
        m_document.reset();
        addBlock(algorithm, {6, 6, 6}, Red);
        light(true);
        drawAll();
        // A corner of the smooth skin takes part in six triangles and is weighed by five.
        const double share = algorithm == TotalVolumePainter::MarchingCubes ? 5.0 / 6 : 1.0;
        expectColorAt(3.05, 3.05, 0, {red[0] * share, red[1] * share, red[2] * share});
        light(false);
        drawAll();
        expectColorAt(3.05, 3.05, 0, black);
        glDisable(GL_LIGHTING);
        drawAll();
        expectColorAt(3.05, 3.05, 0, red);
    }
}

TEST_F(TotalVolumeSurfacesTest, EdgesAreDrawnUnlitByBlocksAndNotByTheSmoothSurface)
{
    glDepthFunc(GL_LEQUAL);
    for (const auto algorithm : Algorithms) {
        SCOPED_TRACE(algorithm);
        m_document.reset();
        addBlock(algorithm, {4, 4, 3}, Red);
        light(false);
        drawAll();
        EXPECT_EQ(pixelsOf(red), 0);
        drawAll(true);
        // Over the border between the cells (1, 1) and (2, 1).
        const int along = pixelsOf(red, {1.55, 1.55, 0}, {2.45, 1.55, 0});
        EXPECT_EQ(along, algorithm == TotalVolumePainter::MarchingCubes ? 0 : 2);
        expectColorAt(1.55, 1.55, 0, black);
        glDisable(GL_LIGHTING);
    }
}

TEST_F(TotalVolumeSurfacesTest, LargeBlockOfTheOctreeHasEdgesOnItsOutlineOnly)
{
    glDepthFunc(GL_LEQUAL);
    addBlock(TotalVolumePainter::Octree, {4, 4, 4}, Red);
    light(false);
    drawAll(true);
    EXPECT_EQ(pixelsOf(red, {0.15, 2.05, 0}, {3.85, 2.05, 0}), 0);
    EXPECT_GT(pixelsOf(red, {-0.45, 2.05, 0}, {4.45, 2.05, 0}), 0);
}

TEST_F(TotalVolumeSurfacesTest, TransparentFilmShowsTheOpaqueOneBelow)
{
    const Grid grid{4, 4, 4};
    for (const auto algorithm : Algorithms) {
        SCOPED_TRACE(algorithm);
        m_document.reset();
        add(algorithm, grid,
            materialsBy(grid, [](auto, auto, auto z) { return z < 2 ? Red : Glass; }));
        drawAll();
        const bool isSmooth = algorithm == TotalVolumePainter::MarchingCubes;
        const Color opaqueGlass{glass[0], glass[1], glass[2]};
        expectColorAt(2.05, 2.05, 0, isSmooth ? opaqueGlass : over(red, glass));
        look(FromBelow);
        drawAll();
        expectColorAt(2.05, 2.05, 0, red);
        look(FromFront);
        drawAll();
        expectColorAt(2.05, 0, 2.75, isSmooth ? opaqueGlass : over(background(), glass));
        expectColorAt(2.05, 0, 0.75, red);
        look(FromAbove);
    }
}

TEST_F(TotalVolumeSurfacesTest, AlphaDecidesHowABlockShows)
{
    struct Look
    {
        float alpha;
        /// By algorithm: how much of the colour is seen.
        std::array<double, 3> shares;
    };
    const Look looks[] = {{0.0f, {0, 1, 0}},
                          {0.05f, {0.05, 1, 0.05}},
                          {0.5f, {0.5, 1, 0.5}},
                          {0.998f, {1, 1, 0.998}},
                          {1.0f, {1, 1, 1}}};
    for (const Look &one : looks) {
        setMaterial(Thin, {0.9f, 0.1f, 0.2f, one.alpha});
        for (const auto algorithm : Algorithms) {
            SCOPED_TRACE(testing::Message() << "alpha " << one.alpha << ", " << algorithm);
            m_document.reset();
            addBlock(algorithm, {4, 4, 4}, Thin);
            drawAll();
            // A film that is nearly clear keeps the faces between its cells, layer by layer; only
            // upward ones are seen from above.
            Color expected = background();
            const bool isLayered = algorithm == TotalVolumePainter::DirectCubic && one.alpha < 0.1f;
            for (int layer = 0; layer < (isLayered ? 4 : 1); ++layer)
                expected = over(expected, {red[0], red[1], red[2], one.shares[algorithm]});
            expectColorAt(2.05, 2.05, 0, expected);
        }
    }
}

TEST_F(TotalVolumeSurfacesTest, MaterialThatIsInNoRegistryIsDrawnLikeTheEmptyOne)
{
    const Material empty;
    const float *color = empty.color();
    for (const auto algorithm : Algorithms) {
        SCOPED_TRACE(algorithm);
        m_document.reset();
        const auto volume = addBlock(algorithm, {4, 4, 4}, Unknown);
        drawAll(true);
        const bool isSmooth = algorithm == TotalVolumePainter::MarchingCubes;
        // A clear one keeps the faces of each layer where it is drawn as cubes.
        Color expected = background();
        for (int layer = 0; layer < (color[3] < 0.1f && algorithm == 0 ? 4 : 1); ++layer)
            expected = over(expected, {color[0], color[1], color[2],
                                       isSmooth ? 1.0 : static_cast<double>(color[3])});
        drawAll();
        expectColorAt(2.05, 2.05, 0, expected);
        volume->setSelected(true);
        drawAll(true);
        volume->painter().refreshColors();
        drawAll();
    }
}

TEST_F(TotalVolumeSurfacesTest, SelectionShowsAtTheNextDrawWithoutARebuild)
{
    for (const auto algorithm : Algorithms) {
        SCOPED_TRACE(algorithm);
        m_document.reset();
        const auto volume = addBlock(algorithm, {4, 4, 4}, Red);
        drawAll();
        expectColorAt(2.05, 2.05, 0, red);
        volume->setSelected(true);
        for (int draws = 0; draws < 3; ++draws) {
            drawAll();
            expectColorAt(2.05, 2.05, 0, highlightedRed);
        }
        volume->setSelected(false);
        drawAll();
        expectColorAt(2.05, 2.05, 0, red);
    }
}

TEST_F(TotalVolumeSurfacesTest, SelectedEdgesAreHighlightedToo)
{
    glDepthFunc(GL_LEQUAL);
    for (const auto algorithm : {TotalVolumePainter::DirectCubic, TotalVolumePainter::Octree}) {
        SCOPED_TRACE(algorithm);
        m_document.reset();
        const auto volume = addBlock(algorithm, {4, 4, 3}, Red);
        light(false);
        drawAll(true);
        EXPECT_GT(pixelsOf(red), 0);
        volume->setSelected(true);
        drawAll(true);
        EXPECT_EQ(pixelsOf(red), 0);
        EXPECT_GT(pixelsOf(highlightedRed), 0);
        glDisable(GL_LIGHTING);
    }
}

TEST_F(TotalVolumeSurfacesTest, NewColorsShowAfterTheyAreRefreshed)
{
    for (const auto algorithm : Algorithms) {
        SCOPED_TRACE(algorithm);
        m_document.reset();
        setMaterial(Red, {0.9f, 0.1f, 0.2f, 1.0f});
        const auto volume = addBlock(algorithm, {4, 4, 4}, Red);
        drawAll();
        setMaterial(Red, {0.1f, 0.2f, 0.9f, 1.0f});
        drawAll();
        // The smooth surface looks its colours up at every draw.
        expectColorAt(2.05, 2.05, 0, algorithm == TotalVolumePainter::MarchingCubes ? blue : red);
        volume->painter().refreshColors();
        drawAll();
        expectColorAt(2.05, 2.05, 0, blue);
    }
}

TEST_F(TotalVolumeSurfacesTest, NewColorsReachEdges)
{
    glDepthFunc(GL_LEQUAL);
    for (const auto algorithm : {TotalVolumePainter::DirectCubic, TotalVolumePainter::Octree}) {
        SCOPED_TRACE(algorithm);
        m_document.reset();
        setMaterial(Red, {0.9f, 0.1f, 0.2f, 1.0f});
        const auto volume = addBlock(algorithm, {4, 4, 3}, Red);
        drawAll(true);
        setMaterial(Red, {0.1f, 0.2f, 0.9f, 1.0f});
        volume->painter().refreshColors();
        light(false);
        drawAll(true);
        EXPECT_EQ(pixelsOf(red), 0);
        EXPECT_GT(pixelsOf(blue), 0);
        glDisable(GL_LIGHTING);
    }
}

TEST_F(TotalVolumeSurfacesTest, CutIsClosedByALidAndThatOfTheSmoothSkinLiesHalfACellFurtherOut)
{
    for (const auto algorithm : Algorithms) {
        SCOPED_TRACE(algorithm);
        m_document.reset();
        const auto volume = addBlock(algorithm, {8, 8, 8}, Red);
        volume->painter().setCutLimits({2, 2, 2}, {6, 6, 6});
        drawAll();
        expectColorAt(1.25, 4.05, 0, red);
        volume->painter().rebuild();
        drawAll();
        expectColorAt(1.25, 4.05, 0, background());
        expectColorAt(4.05, 4.05, 0, red);
        // The smooth skin takes the cell at the upper limit in, and lies half a cell behind it.
        const bool isSmooth = algorithm == TotalVolumePainter::MarchingCubes;
        const double lid = isSmooth ? 6.5 : 6;
        showSlab(lid - 0.05, lid + 0.05);
        drawAll();
        expectColorAt(4.05, 4.05, 0, red);
        showSlab(lid + 0.05, HalfDepth);
        drawAll();
        EXPECT_EQ(pixelsOf(background()), AllPixels);
        look(FromBelow);
        const double floor = isSmooth ? 2.5 : 2;
        showSlab(-floor - 0.05, -floor + 0.05);
        drawAll();
        expectColorAt(4.05, 4.05, 0, red);
        showSlab(-HalfDepth, HalfDepth);
        look(FromAbove);
    }
}

TEST_F(TotalVolumeSurfacesTest, LimitsAtBothEndsAndThinVolumesAreDrawn)
{
    const Grid grids[] = {{1, 1, 1}, {1, 5, 5}, {5, 1, 5}, {5, 5, 1}, {5, 5, 5}};
    for (const auto algorithm : Algorithms) {
        for (const Grid &grid : grids) {
            SCOPED_TRACE(testing::Message() << algorithm << ", " << grid.sizeX << " x "
                                            << grid.sizeY << " x " << grid.sizeZ);
            m_document.reset();
            const auto volume = addBlock(algorithm, grid, Red);
            drawAll(true);
            if (algorithm != TotalVolumePainter::MarchingCubes)
                expectColorAt(0.55, 0.55, 0, red);
            // The last cell of each axis, then the first.
            volume->painter().setCutLimits({grid.sizeX - 1, grid.sizeY - 1, grid.sizeZ - 1},
                                           {grid.sizeX, grid.sizeY, grid.sizeZ});
            volume->painter().rebuild();
            drawAll(true);
            if (algorithm != TotalVolumePainter::MarchingCubes)
                expectColorAt(grid.sizeX - 0.45, grid.sizeY - 0.45, 0, red);
            volume->painter().setCutLimits({0, 0, 0}, {1, 1, 1});
            volume->painter().rebuild();
            drawAll(true);
            // And none at all.
            volume->painter().setCutLimits({0, 0, 0}, {0, 0, 0});
            volume->painter().rebuild();
            drawAll();
            if (algorithm != TotalVolumePainter::MarchingCubes) {
                EXPECT_EQ(pixelsOf(background()), AllPixels);
            }
        }
    }
}

TEST_F(TotalVolumeSurfacesTest, ChosenSurfaceShowsAfterTheNextRebuild)
{
    for (const auto algorithm : {TotalVolumePainter::MarchingCubes, TotalVolumePainter::Octree}) {
        SCOPED_TRACE(algorithm);
        m_document.reset();
        const auto volume = addBlock(TotalVolumePainter::DirectCubic, {4, 4, 4}, Red);
        volume->painter().setSurfaceAlgorithm(algorithm);
        drawAll();
        EXPECT_EQ(pixelsOf(background()), AllPixels);
        volume->painter().rebuild();
        drawAll();
        expectColorAt(2.05, 2.05, 0, red);
        // The direct faces are always kept up, so going back needs none.
        volume->painter().setSurfaceAlgorithm(TotalVolumePainter::DirectCubic);
        drawAll();
        EXPECT_EQ(pixelsOf(red), 16 * SquareUnit);
    }
}

TEST_F(TotalVolumeSurfacesTest, MasksOfTheSmoothSurfaceComeAgainWithoutItsPosition)
{
    const Color shown = over(background(), mask);
    for (const auto algorithm : Algorithms) {
        SCOPED_TRACE(algorithm);
        m_document.reset();
        const auto volume = addBlock(algorithm, {2, 2, 2}, 0, Vector3D(-6, 4, 0));
        volume->setTopMask(Bits(4, true), 2, 2);
        drawAll();
        const bool isSmooth = algorithm == TotalVolumePainter::MarchingCubes;
        EXPECT_EQ(pixelsOf(shown, {-5.95, 4.05, 0}, {-4.05, 5.95, 0}), 4 * SquareUnit);
        EXPECT_EQ(pixelsOf(shown, {0.05, 0.05, 0}, {1.95, 1.95, 0}), isSmooth ? 4 * SquareUnit : 0);
        EXPECT_EQ(pixelsOf(background()), AllPixels - (isSmooth ? 8 : 4) * SquareUnit);
        // Without a position both lie over each other.
        volume->translate({6, -4, 0});
        drawAll();
        EXPECT_EQ(pixelsOf(isSmooth ? over(shown, mask) : shown), 4 * SquareUnit);
    }
}

TEST_F(TotalVolumeSurfacesTest, SmoothSurfacePopsOneMatrixMoreThanItPushes)
{
    const auto volume = addBlock(TotalVolumePainter::MarchingCubes, {4, 4, 4}, Red);
    const auto before = modelview();
    draw([&] {
        glPushMatrix();
        glPushMatrix();
        glTranslated(1, 2, 3);
        volume->draw(true, false);
        EXPECT_EQ(integer(GL_MODELVIEW_STACK_DEPTH), 2);
        EXPECT_EQ(modelview(), before);
        glPopMatrix();
    });
    expectColorAt(3.05, 4.05, 0, red);
}

TEST_F(TotalVolumeSurfacesTest, ListsOfManyFacesAreDrawnWhole)
{
    const Grid grid{24, 24, 1}; // the whole picture, in more portions than one
    const Ids ids =
        materialsBy(grid, [](auto x, auto y, auto) { return (x + y) % 2 == 0 ? Red : Blue; });
    for (const auto algorithm : {TotalVolumePainter::DirectCubic, TotalVolumePainter::Octree}) {
        SCOPED_TRACE(algorithm);
        m_document.reset();
        const auto volume = add(algorithm, grid, ids, Vector3D(-12, -12, 0));
        ASSERT_GT(volume->painter().opaqueFaces().size(), 1024U);
        drawAll();
        EXPECT_EQ(pixelsOf(red), AllPixels / 2);
        EXPECT_EQ(pixelsOf(blue), AllPixels / 2);
        for (const double x : {-11.5, -0.5, 0.5, 11.5})
            for (const double y : {-11.5, 0.5, 10.5})
                expectColorAt(
                    x, y, 0,
                    (static_cast<int>(x + 12) + static_cast<int>(y + 12)) % 2 == 0 ? red : blue);
    }
}

TEST_F(TotalVolumeSurfacesTest, PictureFollowsEveryRebuild)
{
    for (const auto algorithm : Algorithms) {
        SCOPED_TRACE(algorithm);
        m_document.reset();
        const Grid grid{6, 6, 6};
        const auto volume = addBlock(algorithm, grid, Red);
        drawAll();
        auto *cells = volume->voxels();
        for (std::size_t i = 0; i < grid.cells(); ++i)
            cells[i].setMaterial(i < grid.cells() / 2 ? 0 : Blue);
        volume->releaseVoxels();
        volume->painter().rebuild();
        drawAll();
        expectColorAt(1.55, 3.05, 0, background());
        expectColorAt(4.55, 3.05, 0, blue);
        EXPECT_EQ(pixelsOf(red), 0);
    }
}

TEST_F(TotalVolumeSurfacesTest, VolumeThatWasDrawnInAnotherWindowIsDrawnHereToo)
{
    for (const auto algorithm : Algorithms) {
        SCOPED_TRACE(algorithm);
        m_document.reset();
        auto *here = const_cast<QGLContext *>(QGLContext::currentContext());
        VolumePtr volume;
        {
            QGLWidget other;
            other.makeCurrent();
            volume = addBlock(algorithm, {4, 4, 4}, Red);
            volume->setTopMask(Bits(1, true), 1, 1);
            volume->draw(true, true);
            while (integer(GL_MODELVIEW_STACK_DEPTH) > 1)
                glPopMatrix();
        }
        here->makeCurrent();
        drawAll();
        expectColorAt(2.05, 2.05, 0, red);
        EXPECT_NE(pixelsOf(over(red, mask)) + pixelsOf(over(background(), mask)) +
                      pixelsOf(over(over(red, mask), mask)) +
                      pixelsOf(over(over(background(), mask), mask)),
                  0);
    }
}

TEST_F(TotalVolumeSurfacesTest, VolumeOutlivesItsContext)
{
    for (const auto algorithm : Algorithms) {
        auto *here = const_cast<QGLContext *>(QGLContext::currentContext());
        {
            QGLWidget other;
            other.makeCurrent();
            addBlock(algorithm, {4, 4, 4}, Red)->draw(true, true);
        }
        EXPECT_EQ(QGLContext::currentContext(), nullptr);
        m_document.reset();
        here->makeCurrent();
    }
}

// Display lists are numbered from 1 in every window.
TEST_F(TotalVolumeSurfacesTest, VolumeThatGoesWhileAnotherWindowIsCurrentLeavesTheListsOfThatWindow)
{
    constexpr GLsizei Lists = 4096;
    const auto lists = [] {
        int count = 0;
        for (GLuint name = 1; name <= Lists; ++name)
            count += glIsList(name) != 0;
        return count;
    };
    auto *here = const_cast<QGLContext *>(QGLContext::currentContext());
    addBlock(TotalVolumePainter::DirectCubic, {2, 2, 2}, Red);
    QGLWidget other;
    other.makeCurrent();
    const GLuint first = glGenLists(Lists);
    EXPECT_EQ(first, 1U);
    EXPECT_EQ(lists(), Lists);
    m_document.reset();
    EXPECT_EQ(lists(), Lists);
    glDeleteLists(first, Lists);
    here->makeCurrent();

    const int before = lists();
    addBlock(TotalVolumePainter::DirectCubic, {2, 2, 2}, Red);
    EXPECT_EQ(lists(), before + 1);
    m_document.reset();
    EXPECT_EQ(lists(), before) << "its own list goes with it";
}
