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
#include <map>
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
constexpr std::uint32_t Foil = 73;

const GlTest::Color red{0.9, 0.1, 0.2};
const GlTest::Color highlightedRed{0.2, 0.4, 0.5};
const GlTest::Color blue{0.1, 0.2, 0.9};
const GlTest::Rgba glass{0.3, 0.8, 0.4, 0.5};
const GlTest::Rgba foil{1.0, 0.9, 0.2, 0.3};
const GlTest::Rgba mask{0.2, 0.8, 0.2, 0.3};
const GlTest::Color grey{0.8, 0.8, 0.8};
const GlTest::Color black{0, 0, 0};

constexpr int SquareUnit = 100; // pixels
constexpr int AllPixels = GlCanvas::Side * GlCanvas::Side;

class TotalVolumePictureTest : public GlTest
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
        setMaterial(Foil, {1.0f, 0.9f, 0.2f, 0.3f});
    }
    void TearDown() override
    {
        MaterialFactory::instance()->loadDefaultMaterials();
        GlTest::TearDown();
    }

    static void setMaterial(std::uint32_t id, const std::array<float, 4> &color)
    {
        MaterialFactory::instance()->updateMaterial(
            Material(id, QStringLiteral("Test"), 1.0f, 1.0f, 1.0f, color.data()));
    }

    /// With its faces built.
    static VolumePtr makeVolume(const Grid &grid, const Ids &ids,
                                const Vector3D &position = Vector3D())
    {
        const auto volume =
            boost::make_shared<TotalVolume>(grid.sizeX, grid.sizeY, grid.sizeZ, grid.cellSizeX,
                                            grid.cellSizeY, grid.cellSizeZ, position, ids);
        volume->painter().rebuild();
        return volume;
    }
    static VolumePtr makeBlock(const Grid &grid, std::uint32_t id,
                               const Vector3D &position = Vector3D())
    {
        return makeVolume(grid, Ids(grid.cells(), id), position);
    }

    void drawVolume(const VolumePtr &volume, bool edges = false)
    {
        draw([&] { volume->draw(true, edges); });
    }

    /// White light on surfaces that look into that direction, given in the eye's coordinates, and
    /// none elsewhere; materials take the colours that are drawn.
    static void lightFrom(float x, float y, float z)
    {
        const float none[4] = {0, 0, 0, 1};
        const float white[4] = {1, 1, 1, 1};
        const float direction[4] = {x, y, z, 0};
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

    /// What is drawn in selection mode within a small square around (x, y), seen from above.
    std::vector<Hit> pickAt(double x, double y, const std::function<void()> &act)
    {
        look(FromAbove);
        glMatrixMode(GL_PROJECTION);
        glLoadIdentity();
        glOrtho(x - 0.01, x + 0.01, y - 0.01, y + 0.01, -HalfDepth, HalfDepth);
        glMatrixMode(GL_MODELVIEW);
        const auto hits = pick(act);
        look(FromAbove);
        return hits;
    }
};

} // namespace

TEST_F(TotalVolumePictureTest, SolidShowsItsColorsFromEverySide)
{
    const auto volume = makeVolume(
        {2, 3, 4}, materialsBy({2, 3, 4}, [](auto, auto, auto z) { return z < 1 ? Red : Blue; }));
    struct Picture
    {
        View view;
        int redArea, blueArea;
    };
    const std::array<Picture, 6> pictures{{{FromAbove, 0, 6},
                                           {FromBelow, 6, 0},
                                           {FromFront, 2, 6},
                                           {FromBack, 2, 6},
                                           {FromLeft, 3, 9},
                                           {FromRight, 3, 9}}};
    for (const Picture &picture : pictures) {
        SCOPED_TRACE(picture.view);
        look(picture.view);
        drawVolume(volume);
        EXPECT_EQ(pixelsOf(red), picture.redArea * SquareUnit);
        EXPECT_EQ(pixelsOf(blue), picture.blueArea * SquareUnit);
        EXPECT_EQ(pixelsOf(background()),
                  AllPixels - (picture.redArea + picture.blueArea) * SquareUnit);
        expectColorAt(1.05, 1.55, 0.5, picture.view == FromAbove ? blue : red);
        expectColorAt(1.05, 1.55, 3.5, picture.view == FromBelow ? red : blue);
    }
}

TEST_F(TotalVolumePictureTest, EachCellIsWhereItsCoordinatesSay)
{
    const auto volume =
        makeVolume({3, 4, 1}, materialsBy({3, 4, 1}, [](auto x, auto y, auto) -> std::uint32_t {
                       return x == 2 && y == 1 ? Red : x == 0 && y == 3 ? Blue : 0;
                   }));
    drawVolume(volume);
    expectColorAt(2.5, 1.5, 0, red);
    expectColorAt(0.5, 3.5, 0, blue);
    EXPECT_EQ(pixelsOf(background()), AllPixels - 2 * SquareUnit);
}

TEST_F(TotalVolumePictureTest, CellsHaveTheirSizeAlongEachAxis)
{
    const auto volume = makeBlock({3, 4, 10, 1.0f, 0.5f, 0.35f}, Red);
    drawVolume(volume);
    EXPECT_EQ(pixelsOf(red), 30 * 20);
    look(FromFront);
    drawVolume(volume);
    EXPECT_EQ(pixelsOf(red), 30 * 35);
    look(FromRight);
    drawVolume(volume);
    EXPECT_EQ(pixelsOf(red), 20 * 35);
}

TEST_F(TotalVolumePictureTest, NothingShowsBeforeTheFirstRebuild)
{
    TotalVolume volume(2, 2, 2, 1, 1, 1, Vector3D(), Ids(8, Red));
    draw([&] { volume.draw(true, true); });
    EXPECT_EQ(pixelsOf(background()), AllPixels);
    volume.painter().rebuild();
    draw([&] { volume.draw(true, false); });
    EXPECT_EQ(pixelsOf(red), 4 * SquareUnit);
}

TEST_F(TotalVolumePictureTest, VolumeIsDrawnAtItsPosition)
{
    const auto volume = makeBlock({2, 2, 2}, Red, Vector3D(-5, 3, 7));
    drawVolume(volume);
    EXPECT_EQ(pixelsOf(red), 4 * SquareUnit);
    EXPECT_EQ(pixelsOf(red, {-4.95, 3.05, 0}, {-3.05, 4.95, 0}), 4 * SquareUnit);
    look(FromFront);
    drawVolume(volume);
    EXPECT_EQ(pixelsOf(red, {-4.95, 0, 7.05}, {-3.05, 0, 8.95}), 4 * SquareUnit);
}

TEST_F(TotalVolumePictureTest, AfterTranslationTheSurfaceShowsAtTheNewPlaceWithoutARebuild)
{
    const auto volume = makeBlock({2, 2, 2}, Red);
    drawVolume(volume);
    EXPECT_EQ(pixelsOf(red, {0.05, 0.05, 0}, {1.95, 1.95, 0}), 4 * SquareUnit);
    volume->translate({3, -4, 5});
    drawVolume(volume);
    EXPECT_EQ(pixelsOf(red), 4 * SquareUnit);
    EXPECT_EQ(pixelsOf(red, {3.05, -3.95, 0}, {4.95, -2.05, 0}), 4 * SquareUnit);
    look(FromRight);
    drawVolume(volume);
    EXPECT_EQ(pixelsOf(red, {0, -3.95, 5.05}, {0, -2.05, 6.95}), 4 * SquareUnit);
}

TEST_F(TotalVolumePictureTest, FacesAreLitByTheirNormals)
{
    const auto volume = makeBlock({2, 2, 2}, Red);
    for (const View view : {FromAbove, FromBelow, FromFront, FromBack, FromLeft, FromRight}) {
        SCOPED_TRACE(view);
        look(view);
        lightFrom(0, 0, 1);
        drawVolume(volume);
        EXPECT_EQ(pixelsOf(red), 4 * SquareUnit);
        for (const auto &away : {std::array<float, 2>{1, 0}, {-1, 0}, {0, 1}, {0, -1}}) {
            lightFrom(away[0], away[1], 0);
            drawVolume(volume);
            EXPECT_EQ(pixelsOf(black), 4 * SquareUnit);
        }
    }
}

TEST_F(TotalVolumePictureTest, EdgesAreTwoPixelsWideAndUnlitInTheColorOfTheirFaces)
{
    const auto volume = makeBlock({3, 3, 1}, Red);
    glDepthFunc(GL_LEQUAL);
    lightFrom(0, 0, -1);
    drawVolume(volume);
    EXPECT_EQ(pixelsOf(red), 0);
    EXPECT_EQ(pixelsOf(black), 9 * SquareUnit);

    drawVolume(volume, true);
    EXPECT_EQ(pixelsOf(red, {0.55, 1.55, 0}, {1.45, 1.55, 0}), 2);
    EXPECT_EQ(pixelsOf(black, {0.55, 1.55, 0}, {1.45, 1.55, 0}), 8);
    EXPECT_EQ(pixelsOf(red, {1.55, 1.55, 0}, {1.55, 2.45, 0}), 2);
    EXPECT_EQ(pixelsOf(black, {1.55, 1.55, 0}, {1.55, 2.45, 0}), 8);
    expectColorAt(1.55, 1.55, 0, black);
}

TEST_F(TotalVolumePictureTest, EdgesGetNoDepthOffset)
{
    // It is asked for filled faces, and an edge in the plane of a face then loses against it.
    const auto volume = makeBlock({3, 3, 1}, Red);
    // This close to the viewer, depths are fine enough for the smallest offset to count.
    showSlab(-HalfDepth, 1.001);
    lightFrom(0, 0, -1);
    drawVolume(volume, true);
    EXPECT_EQ(pixelsOf(red, {0.35, 1.55, 0}, {2.65, 1.55, 0}), 0);
    // Outside the solid there is nothing to lose against.
    EXPECT_GT(pixelsOf(red, {-0.45, 1.55, 0}, {0.45, 1.55, 0}), 0);
}

TEST_F(TotalVolumePictureTest, EdgesOfTransparentFacesAreOpaque)
{
    const auto volume = makeBlock({3, 3, 1}, Glass);
    const Color blended = over(background(), glass);
    const Color full{glass[0], glass[1], glass[2]};
    drawVolume(volume);
    EXPECT_EQ(pixelsOf(blended), 9 * SquareUnit);
    drawVolume(volume, true);
    EXPECT_EQ(pixelsOf(full, {0.55, 1.55, 0}, {1.45, 1.55, 0}), 2);
    EXPECT_EQ(pixelsOf(blended, {0.55, 1.55, 0}, {1.45, 1.55, 0}), 8);
}

TEST_F(TotalVolumePictureTest, EmptyCellsShowAsGreyEdgesOnly)
{
    const Grid grid{3, 3, 1};
    const auto volume = makeBlock(grid, 0);
    drawVolume(volume, true);
    EXPECT_EQ(pixelsOf(background()), AllPixels);

    volume->painter().setShowEmptyVoxels(true);
    drawVolume(volume, true);
    EXPECT_EQ(pixelsOf(background()), AllPixels);

    volume->painter().rebuild();
    drawVolume(volume, true);
    EXPECT_EQ(pixelsOf(grey, {0.55, 1.55, 0}, {1.45, 1.55, 0}), 2);
    EXPECT_EQ(pixelsOf(background(), {0.55, 1.55, 0}, {1.45, 1.55, 0}), 8);
    EXPECT_EQ(pixelsOf(grey, {1.55, 1.55, 0}, {1.55, 2.45, 0}), 2);
    drawVolume(volume);
    EXPECT_EQ(pixelsOf(background()), AllPixels);

    volume->painter().setShowEmptyVoxels(false);
    drawVolume(volume, true);
    EXPECT_EQ(pixelsOf(background()), AllPixels);
}

TEST_F(TotalVolumePictureTest, TransparentCellBlendsOverTheOpaqueOneBelow)
{
    const auto volume = makeVolume({3, 1, 2}, {Red, Glass, 0, Glass, Glass, Glass});
    drawVolume(volume);
    expectColorAt(0.5, 0.5, 0, over(red, glass));
    expectColorAt(1.5, 0.5, 0, over(background(), glass));
    expectColorAt(2.5, 0.5, 0, over(background(), glass));
    EXPECT_EQ(pixelsOf(over(red, glass)), SquareUnit);

    look(FromBelow);
    drawVolume(volume);
    expectColorAt(0.5, 0.5, 0, red);
    expectColorAt(1.5, 0.5, 0, over(background(), glass));
}

TEST_F(TotalVolumePictureTest, TransparentCellsComeAfterAllOpaqueOnesOfTheirVolume)
{
    // Seen from the left, the glass of the first column stands before the opaque last one.
    const auto volume = makeVolume({3, 1, 1}, {Glass, 0, Red});
    look(FromLeft);
    drawVolume(volume);
    EXPECT_EQ(pixelsOf(over(red, glass)), SquareUnit);
    look(FromRight);
    drawVolume(volume);
    EXPECT_EQ(pixelsOf(red), SquareUnit);
}

TEST_F(TotalVolumePictureTest, TransparentFacesAreDrawnInListOrderFromWhereverTheyAreSeen)
{
    const auto volume = makeVolume({1, 1, 2}, {Foil, Glass});
    const Color foilFirst = over(over(background(), foil), glass);
    drawVolume(volume);
    EXPECT_EQ(pixelsOf(foilFirst), SquareUnit);
    look(FromBelow);
    drawVolume(volume);
    EXPECT_EQ(pixelsOf(foilFirst), SquareUnit);
}

TEST_F(TotalVolumePictureTest, TransparentFacesDoNotHideWhatIsDrawnBehindThemLater)
{
    const auto nearer = makeBlock({2, 2, 1}, Glass, Vector3D(0, 0, 5));
    const auto farther = makeBlock({2, 2, 1}, Red);
    draw([&] {
        nearer->draw(true, false);
        farther->draw(true, false);
    });
    EXPECT_EQ(pixelsOf(red), 4 * SquareUnit);
    draw([&] {
        farther->draw(true, false);
        nearer->draw(true, false);
    });
    EXPECT_EQ(pixelsOf(over(red, glass)), 4 * SquareUnit);
}

TEST_F(TotalVolumePictureTest, CullingOfBackFacesIsLeftToTheView)
{
    const auto volume = makeBlock({2, 2, 1}, Glass);
    drawVolume(volume);
    EXPECT_EQ(pixelsOf(over(background(), glass)), 4 * SquareUnit);
    glDisable(GL_CULL_FACE);
    drawVolume(volume);
    EXPECT_EQ(pixelsOf(over(over(background(), glass), glass)), 4 * SquareUnit);
}

TEST_F(TotalVolumePictureTest, CutShowsItsInsideAfterARebuild)
{
    const auto volume = makeVolume(
        {3, 3, 3}, materialsBy({3, 3, 3}, [](auto, auto, auto z) { return z < 1 ? Red : Blue; }));
    volume->painter().setCutLimits({1, 0, 0}, {3, 2, 1});
    drawVolume(volume);
    EXPECT_EQ(pixelsOf(blue), 9 * SquareUnit);
    volume->painter().rebuild();
    drawVolume(volume);
    EXPECT_EQ(pixelsOf(blue), 0);
    EXPECT_EQ(pixelsOf(red), 4 * SquareUnit);
    EXPECT_EQ(pixelsOf(red, {1.05, 0.05, 0}, {2.95, 1.95, 0}), 4 * SquareUnit);
    look(FromLeft);
    drawVolume(volume);
    EXPECT_EQ(pixelsOf(red), 2 * SquareUnit);
}

TEST_F(TotalVolumePictureTest, TopMaskLiesFiveLayersAboveTheTopLayer)
{
    const auto volume = makeBlock({2, 2, 4, 1.0f, 1.0f, 0.5f}, 0, Vector3D(0, 0, 1));
    volume->setTopMask(Bits(4, true), 2, 2);
    const Color shown = over(background(), mask);
    // 1 + (4 + 5) * 0.5
    showSlab(5.49, 5.51);
    drawVolume(volume);
    EXPECT_EQ(pixelsOf(shown), 4 * SquareUnit);
    showSlab(5.51, HalfDepth);
    drawVolume(volume);
    EXPECT_EQ(pixelsOf(background()), AllPixels);
    showSlab(-HalfDepth, 5.49);
    drawVolume(volume);
    EXPECT_EQ(pixelsOf(background()), AllPixels);
}

TEST_F(TotalVolumePictureTest, BottomMaskLiesFiveLayersBelowTheBottom)
{
    const auto volume = makeBlock({2, 2, 4, 1.0f, 1.0f, 0.5f}, 0, Vector3D(0, 0, 1));
    volume->setBottomMask(Bits(4, true), 2, 2);
    const Color shown = over(background(), mask);
    // 1 - 5 * 0.5
    showSlab(-1.51, -1.49);
    drawVolume(volume);
    EXPECT_EQ(pixelsOf(shown), 4 * SquareUnit);
    showSlab(-1.49, HalfDepth);
    drawVolume(volume);
    EXPECT_EQ(pixelsOf(background()), AllPixels);
    showSlab(-HalfDepth, -1.51);
    drawVolume(volume);
    EXPECT_EQ(pixelsOf(background()), AllPixels);
}

TEST_F(TotalVolumePictureTest, SetBitsOfAMaskAreDrawnAtTheirColumns)
{
    const Color shown = over(background(), mask);
    for (const bool top : {false, true}) {
        SCOPED_TRACE(top);
        const auto volume = makeBlock({3, 4, 1, 2.0f, 0.5f, 1.0f}, 0, Vector3D(1, 2, 0));
        // Three columns of four bits.
        Bits bits(12, false);
        bits[0 * 4 + 3] = true;
        bits[2 * 4 + 1] = true;
        if (top)
            volume->setTopMask(bits, 3, 4);
        else
            volume->setBottomMask(bits, 3, 4);
        drawVolume(volume);
        EXPECT_EQ(pixelsOf(shown), 2 * SquareUnit);
        EXPECT_EQ(pixelsOf(background()), AllPixels - 2 * SquareUnit);
        EXPECT_EQ(pixelsOf(shown, {1.05, 3.55, 0}, {2.95, 3.95, 0}), SquareUnit);
        EXPECT_EQ(pixelsOf(shown, {5.05, 2.55, 0}, {6.95, 2.95, 0}), SquareUnit);
    }
}

TEST_F(TotalVolumePictureTest, OnlyTheOverlapOfMaskAndVolumeIsDrawn)
{
    const Color shown = over(background(), mask);
    for (const bool top : {false, true}) {
        const auto set = [&](TotalVolume &volume, const Bits &bits, std::uint32_t width,
                             std::uint32_t height) {
            if (top)
                volume.setTopMask(bits, width, height);
            else
                volume.setBottomMask(bits, width, height);
        };
        const auto volume = makeBlock({3, 4, 1}, 0);
        struct Extents
        {
            std::uint32_t width, height;
            int area;
        };
        for (const Extents &extents : {Extents{5, 6, 12}, {2, 6, 8}, {5, 1, 3}, {1, 1, 1}}) {
            SCOPED_TRACE(testing::Message()
                         << "mask of " << extents.width << " x " << extents.height);
            set(*volume, Bits(extents.width * extents.height, true), extents.width, extents.height);
            drawVolume(volume);
            EXPECT_EQ(pixelsOf(shown), extents.area * SquareUnit);
        }
        // Bits are counted by the height of the mask, not of the volume.
        Bits bits(30, false);
        bits[1 * 6 + 2] = true;
        bits[1 * 6 + 4] = true;
        set(*volume, bits, 5, 6);
        drawVolume(volume);
        EXPECT_EQ(pixelsOf(shown), SquareUnit);
        expectColorAt(1.5, 2.5, 0, shown);
    }
}

TEST_F(TotalVolumePictureTest, MaskWithTooFewBitsIsDrawnAsFarAsTheyGo)
{
    const auto volume = makeBlock({3, 3, 1}, 0);
    volume->setTopMask(Bits(4, true), 3, 3);
    volume->setBottomMask(Bits(), 3, 3);
    drawVolume(volume);
    const Color shown = over(background(), mask);
    EXPECT_EQ(pixelsOf(shown), 4 * SquareUnit);
    expectColorAt(0.5, 2.5, 0, shown);
    expectColorAt(1.5, 0.5, 0, shown);
}

TEST_F(TotalVolumePictureTest, MasksBlendOverTheSolidAndAreHiddenBehindIt)
{
    const auto volume = makeVolume({2, 1, 1}, {Red, 0});
    volume->setTopMask(Bits(2, true), 2, 1);
    volume->setBottomMask(Bits(2, true), 2, 1);
    const Color twice = over(over(background(), mask), mask);
    for (const View view : {FromAbove, FromBelow}) {
        SCOPED_TRACE(view);
        look(view);
        drawVolume(volume);
        expectColorAt(0.5, 0.5, 0, over(red, mask));
        expectColorAt(1.5, 0.5, 0, twice);
    }

    volume->clearTopMask();
    look(FromAbove);
    drawVolume(volume);
    expectColorAt(0.5, 0.5, 0, red);
    expectColorAt(1.5, 0.5, 0, over(background(), mask));
    look(FromBelow);
    drawVolume(volume);
    expectColorAt(0.5, 0.5, 0, over(red, mask));
    expectColorAt(1.5, 0.5, 0, over(background(), mask));
}

TEST_F(TotalVolumePictureTest, MasksAreSeenFromBothSides)
{
    const auto volume = makeBlock({2, 2, 1}, 0);
    volume->setTopMask(Bits(4, true), 2, 2);
    for (const View view : {FromAbove, FromBelow}) {
        look(view);
        drawVolume(volume);
        EXPECT_EQ(pixelsOf(over(background(), mask)), 4 * SquareUnit);
    }
    volume->clearTopMask();
    volume->setBottomMask(Bits(4, true), 2, 2);
    for (const View view : {FromAbove, FromBelow}) {
        look(view);
        drawVolume(volume);
        EXPECT_EQ(pixelsOf(over(background(), mask)), 4 * SquareUnit);
    }
}

TEST_F(TotalVolumePictureTest, MasksComeAfterTransparentFaces)
{
    // Seen from below, the top mask lies behind the glass and is drawn over it all the same.
    const auto volume = makeBlock({2, 2, 1}, Glass);
    volume->setTopMask(Bits(4, true), 2, 2);
    look(FromBelow);
    drawVolume(volume);
    EXPECT_EQ(pixelsOf(over(over(background(), glass), mask)), 4 * SquareUnit);
}

TEST_F(TotalVolumePictureTest, MasksWriteNoDepth)
{
    const auto masked = makeBlock({2, 2, 1}, 0);
    masked->setTopMask(Bits(4, true), 2, 2);
    const auto other = makeBlock({2, 2, 1}, Red);
    draw([&] {
        masked->draw(true, false);
        other->draw(true, false);
    });
    EXPECT_EQ(pixelsOf(red), 4 * SquareUnit);
}

TEST_F(TotalVolumePictureTest, ClearedMasksAreGoneWithoutARebuild)
{
    const auto volume = makeBlock({2, 2, 1}, 0);
    volume->setTopMask(Bits(4, true), 2, 2);
    volume->setBottomMask(Bits(4, true), 2, 2);
    drawVolume(volume);
    EXPECT_EQ(pixelsOf(background()), AllPixels - 4 * SquareUnit);
    volume->clearTopMask();
    volume->clearBottomMask();
    drawVolume(volume);
    EXPECT_EQ(pixelsOf(background()), AllPixels);
}

TEST_F(TotalVolumePictureTest, CutLeavesMasksWhole)
{
    const auto volume = makeBlock({3, 3, 3}, 0);
    volume->setTopMask(Bits(9, true), 3, 3);
    volume->painter().setCutLimits({1, 1, 1}, {2, 2, 2});
    volume->painter().rebuild();
    drawVolume(volume);
    EXPECT_EQ(pixelsOf(over(background(), mask)), 9 * SquareUnit);
    showSlab(7.99, 8.01);
    drawVolume(volume);
    EXPECT_EQ(pixelsOf(over(background(), mask)), 9 * SquareUnit);
}

TEST_F(TotalVolumePictureTest, SelectionShowsAtTheNextDrawAndGoesAgain)
{
    const auto volume = makeBlock({2, 2, 2}, Red);
    drawVolume(volume);
    EXPECT_EQ(pixelsOf(red), 4 * SquareUnit);
    volume->setSelected(true);
    for (int draws = 0; draws < 3; ++draws) {
        drawVolume(volume);
        EXPECT_EQ(pixelsOf(highlightedRed), 4 * SquareUnit);
    }
    volume->setSelected(false);
    drawVolume(volume);
    EXPECT_EQ(pixelsOf(red), 4 * SquareUnit);
}

TEST_F(TotalVolumePictureTest, SelectionKeepsTheAlphaOfTransparentFaces)
{
    const auto volume = makeBlock({2, 2, 2}, Glass);
    drawVolume(volume);
    volume->setSelected(true);
    drawVolume(volume);
    EXPECT_EQ(pixelsOf(over(background(), {0.6, 0.1, 0.7, 0.5})), 4 * SquareUnit);
}

TEST_F(TotalVolumePictureTest, HiddenVolumeIsNotDrawn)
{
    const auto volume = makeBlock({2, 2, 2}, Red);
    volume->setTopMask(Bits(4, true), 2, 2);
    volume->painter().setHidden(true);
    drawVolume(volume, true);
    EXPECT_EQ(pixelsOf(background()), AllPixels);
    volume->painter().setHidden(false);
    drawVolume(volume, true);
    EXPECT_LT(pixelsOf(background()), AllPixels);
}

TEST_F(TotalVolumePictureTest, TwoVolumesStandSideBySide)
{
    Document document;
    document.addObject(makeBlock({2, 2, 2}, Red, Vector3D(-6, 0, 0)));
    document.addObject(makeBlock({3, 1, 1}, Blue, Vector3D(2, 1, 0)));
    draw([&] { document.draw(true, false); });
    EXPECT_EQ(pixelsOf(red), 4 * SquareUnit);
    EXPECT_EQ(pixelsOf(blue), 3 * SquareUnit);
    EXPECT_EQ(pixelsOf(red, {-5.95, 0.05, 0}, {-4.05, 1.95, 0}), 4 * SquareUnit);
    EXPECT_EQ(pixelsOf(blue, {2.05, 1.05, 0}, {4.95, 1.95, 0}), 3 * SquareUnit);
}

TEST_F(TotalVolumePictureTest, NearerVolumeHidesTheOtherWhicheverIsDrawnFirst)
{
    const auto low = makeBlock({2, 2, 2}, Red);
    const auto high = makeBlock({1, 2, 2}, Blue, Vector3D(0, 0, 4));
    for (const bool lowFirst : {false, true}) {
        draw([&] {
            (lowFirst ? low : high)->draw(true, false);
            (lowFirst ? high : low)->draw(true, false);
        });
        EXPECT_EQ(pixelsOf(blue), 2 * SquareUnit);
        EXPECT_EQ(pixelsOf(red), 2 * SquareUnit);
    }
}

TEST_F(TotalVolumePictureTest, WithoutSolidsTheVolumeItselfLeavesItsMatrixPushed)
{
    const auto volume = makeBlock({2, 2, 2}, Red, Vector3D(3, 4, 5));
    volume->setTopMask(Bits(4, true), 2, 2);
    const auto before = modelview();
    auto moved = before;
    moved[12] += 3;
    moved[13] += 4;
    moved[14] += 5;
    draw([&] { volume->draw(false, true); });
    EXPECT_EQ(pixelsOf(background()), AllPixels);
    EXPECT_EQ(integer(GL_MODELVIEW_STACK_DEPTH), 2);
    EXPECT_EQ(modelview(), moved);
    glPopMatrix();
    EXPECT_EQ(modelview(), before);
}

TEST_F(TotalVolumePictureTest, HiddenVolumeLeavesTheMatrixAloneWithoutSolidsToo)
{
    const auto volume = makeBlock({2, 2, 2}, Red, Vector3D(3, 4, 5));
    volume->painter().setHidden(true);
    const auto before = modelview();
    draw([&] { volume->draw(false, false); });
    EXPECT_EQ(integer(GL_MODELVIEW_STACK_DEPTH), 1);
    EXPECT_EQ(modelview(), before);
}

TEST_F(TotalVolumePictureTest, WithoutSolidsOtherObjectsStayWhereTheyAre)
{
    Document document;
    const auto other = boost::make_shared<RecordingObject>(-4, -4);
    other->setColor({1, 1, 0, 1});
    for (int volumes = 0; volumes < 40; ++volumes)
        document.addObject(makeBlock({2, 2, 2}, Red, Vector3D(3, 4, 5)));
    document.addObject(other);
    const auto before = modelview();
    for (int draws = 0; draws < 3; ++draws) {
        draw([&] { document.draw(false, true); });
        EXPECT_EQ(pixelsOf({1, 1, 0}, {-3.95, -3.95, 0}, {-3.05, -3.05, 0}), SquareUnit);
        EXPECT_EQ(pixelsOf(background()), AllPixels - SquareUnit);
        EXPECT_EQ(integer(GL_MODELVIEW_STACK_DEPTH), 1);
        EXPECT_EQ(modelview(), before);
    }
    EXPECT_EQ(other->calls().front().matrix, before);
    EXPECT_EQ(glGetError(), unsigned{GL_NO_ERROR});
}

TEST_F(TotalVolumePictureTest, DrawingLeavesTheStateOfTheView)
{
    const auto volume = makeVolume({3, 1, 2}, {Red, Glass, 0, Foil, 0, Blue});
    volume->painter().setShowEmptyVoxels(true);
    volume->painter().rebuild();
    volume->setTopMask(Bits(3, true), 3, 1);
    const auto state = [] {
        std::map<unsigned, int> values;
        for (const unsigned name :
             {GL_CULL_FACE, GL_CULL_FACE_MODE, GL_BLEND, GL_DEPTH_TEST, GL_DEPTH_WRITEMASK,
              GL_DEPTH_FUNC, GL_LIGHTING, GL_POLYGON_OFFSET_FILL, GL_POLYGON_OFFSET_LINE,
              GL_POLYGON_OFFSET_FACTOR, GL_POLYGON_OFFSET_UNITS, GL_LINE_WIDTH, GL_MATRIX_MODE,
              GL_MODELVIEW_STACK_DEPTH, GL_ATTRIB_STACK_DEPTH, GL_BLEND_SRC, GL_BLEND_DST})
            values[name] = integer(name);
        GLint modes[2] = {};
        glGetIntegerv(GL_POLYGON_MODE, modes);
        values[GL_POLYGON_MODE] = modes[0] * 100000 + modes[1];
        return values;
    };
    for (const bool culling : {false, true}) {
        for (const bool edges : {false, true}) {
            SCOPED_TRACE(testing::Message() << "culling " << culling << ", edges " << edges);
            if (culling)
                glEnable(GL_CULL_FACE);
            else
                glDisable(GL_CULL_FACE);
            const auto before = state();
            const auto matrix = modelview();
            volume->draw(true, edges);
            EXPECT_EQ(state(), before);
            EXPECT_EQ(modelview(), matrix);
            volume->drawForPicking();
            EXPECT_EQ(state(), before);
            EXPECT_EQ(modelview(), matrix);
        }
    }
}

TEST_F(TotalVolumePictureTest, VolumesArePickedUnderTheirIdsInDrawingOrder)
{
    Document document;
    const auto low = makeBlock({4, 4, 1}, Red, Vector3D(0, 0, -5));
    const auto high = makeBlock({2, 2, 1}, Blue, Vector3D(0, 0, 5));
    document.addObject(low);
    document.addObject(high);
    // Both lie there: the first drawn comes first, not the nearest.
    auto hits = pickAt(1, 1, [&] { document.drawForPicking(); });
    ASSERT_EQ(hits.size(), 2U);
    EXPECT_EQ(hits[0].names, Ids{low->id()});
    EXPECT_EQ(hits[1].names, Ids{high->id()});

    hits = pickAt(3, 3, [&] { document.drawForPicking(); });
    ASSERT_EQ(hits.size(), 1U);
    EXPECT_EQ(hits[0].names, Ids{low->id()});
    EXPECT_EQ(document.findObject(hits[0].names[0]), low);

    hits = pickAt(5, 5, [&] { document.drawForPicking(); });
    EXPECT_TRUE(hits.empty());
}

TEST_F(TotalVolumePictureTest, PickTargetIsTheWholeBoxOfTheVolume)
{
    Document document;
    // From (-3, 2, 1) to (-1, 4, 3.8); void, and not built.
    document.addObject(boost::make_shared<TotalVolume>(4, 2, 8, 0.5f, 1.0f, 0.35f,
                                                       Vector3D(-3, 2, 1), Ids(64, 0)));
    const auto act = [&] { document.drawForPicking(); };
    for (const double x : {-2.98, -2.0, -1.02})
        for (const double y : {2.02, 3.0, 3.98})
            EXPECT_EQ(pickAt(x, y, act).size(), 1U) << x << ", " << y;
    for (const auto &outside :
         {std::array<double, 2>{-3.02, 3}, {-0.98, 3}, {-2, 1.98}, {-2, 4.02}})
        EXPECT_TRUE(pickAt(outside[0], outside[1], act).empty())
            << outside[0] << ", " << outside[1];

    const double depthStep = 1e-4;
    auto hits = pickAt(-2, 3, act);
    ASSERT_EQ(hits.size(), 1U);
    EXPECT_NEAR(hits[0].nearest, 3.8, depthStep);
    EXPECT_NEAR(hits[0].farthest, 3.8, depthStep) << "the lower side looks away";
    glDisable(GL_CULL_FACE);
    hits = pickAt(-2, 3, act);
    ASSERT_EQ(hits.size(), 1U);
    EXPECT_NEAR(hits[0].nearest, 3.8, depthStep);
    EXPECT_NEAR(hits[0].farthest, 1.0, depthStep);
}

TEST_F(TotalVolumePictureTest, PickTargetIsClosedOnEverySide)
{
    const auto volume = makeBlock({2, 3, 4}, 0);
    struct Picture
    {
        View view;
        int area;
    };
    // Drawn as a picture it shows its extents, in whatever color is current.
    for (const Picture &picture : {Picture{FromAbove, 6},
                                   {FromBelow, 6},
                                   {FromFront, 8},
                                   {FromBack, 8},
                                   {FromLeft, 12},
                                   {FromRight, 12}}) {
        SCOPED_TRACE(picture.view);
        look(picture.view);
        draw([&] {
            glColor4d(1, 1, 1, 1);
            volume->drawForPicking();
        });
        EXPECT_EQ(pixelsOf(background()), AllPixels - picture.area * SquareUnit);
    }
}

TEST_F(TotalVolumePictureTest, CutDoesNotChangeThePickTarget)
{
    Document document;
    const auto volume = makeBlock({4, 4, 4}, Red);
    document.addObject(volume);
    volume->painter().setCutLimits({0, 0, 0}, {1, 1, 1});
    volume->painter().rebuild();
    const auto hits = pickAt(3.5, 3.5, [&] { document.drawForPicking(); });
    ASSERT_EQ(hits.size(), 1U);
    EXPECT_EQ(hits[0].names, Ids{volume->id()});
    EXPECT_NEAR(hits[0].nearest, 4.0, 1e-4);
}

TEST_F(TotalVolumePictureTest, PickTargetFollowsATranslation)
{
    Document document;
    const auto volume = makeBlock({2, 2, 2}, Red);
    document.addObject(volume);
    volume->translate({5, 5, 5});
    const auto act = [&] { document.drawForPicking(); };
    EXPECT_TRUE(pickAt(1, 1, act).empty());
    const auto hits = pickAt(6, 6, act);
    ASSERT_EQ(hits.size(), 1U);
    EXPECT_NEAR(hits[0].nearest, 7.0, 1e-4);
}

TEST_F(TotalVolumePictureTest, HiddenVolumeIsStillPicked)
{
    Document document;
    const auto volume = makeBlock({2, 2, 2}, Red);
    document.addObject(volume);
    volume->painter().setHidden(true);
    const auto hits = pickAt(1, 1, [&] { document.drawForPicking(); });
    ASSERT_EQ(hits.size(), 1U);
    EXPECT_EQ(hits[0].names, Ids{volume->id()});
}

TEST_F(TotalVolumePictureTest, PickedVolumesKeepTheMatrix)
{
    Document document;
    for (int volumes = 0; volumes < 40; ++volumes)
        document.addObject(makeBlock({1, 1, 1}, Red, Vector3D(volumes % 8, volumes / 8, 0)));
    const auto before = modelview();
    const auto hits = pick([&] { document.drawForPicking(); });
    EXPECT_EQ(hits.size(), 40U);
    EXPECT_EQ(modelview(), before);
    EXPECT_EQ(integer(GL_MODELVIEW_STACK_DEPTH), 1);
    EXPECT_EQ(glGetError(), unsigned{GL_NO_ERROR});
}
