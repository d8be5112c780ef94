#include "Model/Automaton/MarchingCubeSurface.h"
#include "Model/Automaton/OctreeSurface.h"
#include "Model/Automaton/TotalVolume.h"
#include "Model/Materials/MaterialFactory.h"

#include "GlTestSupport.h"
#include "Support/Volumes.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdint>

using Model::Automaton::CellTriple;
using Model::Automaton::MarchingCubeSurface;
using Model::Automaton::OctreeSurface;
using Model::Materials::Material;
using Model::Materials::MaterialFactory;
using Support::Grid;
using Support::makeVolume;

namespace {

constexpr std::uint32_t Red = 70;
constexpr std::uint32_t Blue = 71;
constexpr std::uint32_t Glass = 72;
constexpr std::uint32_t Unknown = 4000000000U;

const GlTest::Color red{0.9, 0.1, 0.2};
const GlTest::Color highlightedRed{0.2, 0.4, 0.5};
const GlTest::Color blue{0.1, 0.2, 0.9};
const GlTest::Color glassColor{0.3, 0.8, 0.4};
const GlTest::Color emptyMaterial{0.5, 0.5, 0.5};
const GlTest::Color black{0, 0, 0};

/// The two surfaces drawn by themselves, at the origin.
class SurfacePictureTest : public GlTest
{
protected:
    void SetUp() override
    {
        GlTest::SetUp();
        setMaterial(Red, {0.9f, 0.1f, 0.2f, 1.0f});
        setMaterial(Blue, {0.1f, 0.2f, 0.9f, 1.0f});
        setMaterial(Glass, {0.3f, 0.8f, 0.4f, 0.5f});
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

    static boost::shared_ptr<Model::Automaton::TotalVolume> block(std::uint32_t material)
    {
        return makeVolume(Grid{6, 6, 6}, [material](auto...) { return material; });
    }

    void drawSurface(MarchingCubeSurface &surface)
    {
        draw([&] { surface.draw(false); });
    }
    void drawSurface(OctreeSurface &surface, bool edges = false, bool opaque = true)
    {
        draw([&] { surface.draw(edges, opaque); });
    }

    /// Light from the eye with z 1, from behind the picture with -1, on surfaces that take the
    /// colours that are drawn.
    static void lightFrom(float z)
    {
        const float none[4] = {0, 0, 0, 1};
        const float white[4] = {1, 1, 1, 1};
        const float direction[4] = {0, 0, z, 0};
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
    static void endLight()
    {
        glDisable(GL_LIGHTING);
        glDisable(GL_COLOR_MATERIAL);
    }

    static constexpr CellTriple Whole = {6, 6, 6};
};

} // namespace

TEST_F(SurfacePictureTest, SmoothSkinIsClosedFromEverySide)
{
    const auto volume = block(Red);
    MarchingCubeSurface surface(volume.get());
    surface.rebuild({0, 0, 0}, Whole);
    // Cells 1 to 5 are filled, so the skin goes from 0.5 to 5.5 on every axis.
    for (const View view : {FromAbove, FromBelow, FromFront, FromBack, FromLeft, FromRight}) {
        SCOPED_TRACE(view);
        look(view);
        drawSurface(surface);
        const double inner[2] = {1.05, 4.95};
        for (const double u : inner)
            for (const double v : inner) {
                const bool isAlongX = view == FromLeft || view == FromRight;
                const bool isAlongZ = view == FromAbove || view == FromBelow;
                expectColorAt(isAlongX ? 3 : u, isAlongZ || isAlongX ? v : 3,
                              isAlongZ ? 3 : u + v - (isAlongX ? v : u), red);
            }
        EXPECT_GT(pixelsOf(red), 24 * 100);
        EXPECT_LT(pixelsOf(red), 25 * 100);
        EXPECT_EQ(pixelsOf(red) + pixelsOf(background()), GlCanvas::Side * GlCanvas::Side);
    }
}

TEST_F(SurfacePictureTest, SmoothSkinIsLitByItsNormals)
{
    const auto volume = block(Red);
    MarchingCubeSurface surface(volume.get());
    surface.rebuild({0, 0, 0}, Whole);
    lightFrom(1);
    drawSurface(surface);
    endLight();
    // Six triangles meet in a vertex of a flat side: the sum of their normals is divided by five,
    // which makes 6 / 5, and then by the square of that.
    const double length = 5.0 / 6.0;
    expectColorAt(3.05, 2.95, 5.5, {red[0] * length, red[1] * length, red[2] * length});
}

TEST_F(SurfacePictureTest, SmoothSkinHasTheColorsOfItsMaterials)
{
    const auto volume =
        makeVolume(Grid{6, 6, 6}, [](auto x, auto, auto) { return x < 3 ? Blue : Red; });
    MarchingCubeSurface surface(volume.get());
    surface.rebuild({0, 0, 0}, Whole);
    drawSurface(surface);
    expectColorAt(1.45, 2.95, 5.5, blue);
    expectColorAt(4.45, 2.95, 5.5, red);
}

TEST_F(SurfacePictureTest, NewColorsOfSmoothSkinsNeedNoRebuild)
{
    const auto volume = block(Red);
    MarchingCubeSurface surface(volume.get());
    surface.rebuild({0, 0, 0}, Whole);
    drawSurface(surface);
    expectColorAt(3.05, 2.95, 5.5, red);
    setMaterial(Red, {0.1f, 0.2f, 0.9f, 1.0f});
    drawSurface(surface);
    expectColorAt(3.05, 2.95, 5.5, blue);
    setMaterial(Red, {0.9f, 0.1f, 0.2f, 1.0f});
    volume->setSelected(true);
    for (int draws = 0; draws < 2; ++draws) {
        drawSurface(surface);
        expectColorAt(3.05, 2.95, 5.5, highlightedRed);
    }
    volume->setSelected(false);
    drawSurface(surface);
    expectColorAt(3.05, 2.95, 5.5, red);
}

TEST_F(SurfacePictureTest, TransparentMaterialHasAnOpaqueSmoothSkin)
{
    const auto volume = block(Glass);
    MarchingCubeSurface surface(volume.get());
    surface.rebuild({0, 0, 0}, Whole);
    glEnable(GL_BLEND);
    drawSurface(surface);
    glDisable(GL_BLEND);
    expectColorAt(3.05, 2.95, 5.5, glassColor);
}

TEST_F(SurfacePictureTest, UnknownMaterialLooksLikeTheEmptyOne)
{
    const auto volume = block(Unknown);
    MarchingCubeSurface smooth(volume.get());
    smooth.rebuild({0, 0, 0}, Whole);
    drawSurface(smooth);
    expectColorAt(3.05, 2.95, 5.5, emptyMaterial);
    OctreeSurface blocks(volume.get());
    blocks.rebuild({0, 0, 0}, Whole);
    drawSurface(blocks);
    expectColorAt(3.05, 2.95, 6, emptyMaterial);
    blocks.refreshColors();
    drawSurface(blocks);
    expectColorAt(3.05, 2.95, 6, emptyMaterial);
}

TEST_F(SurfacePictureTest, UnknownMaterialTakesNoColorFromTheVerticesBeforeIt)
{
    for (const bool isFirst : {true, false}) {
        SCOPED_TRACE(isFirst);
        const auto volume = makeVolume(Grid{6, 6, 6}, [isFirst](auto x, auto, auto) {
            return (x < 3) == isFirst ? Unknown : Blue;
        });
        MarchingCubeSurface surface(volume.get());
        surface.rebuild({0, 0, 0}, Whole);
        glColor3f(1, 1, 0);
        drawSurface(surface);
        expectColorAt(1.45, 2.95, 5.5, isFirst ? emptyMaterial : blue);
        expectColorAt(4.45, 2.95, 5.5, isFirst ? blue : emptyMaterial);
    }
}

TEST_F(SurfacePictureTest, RebuildShowsAnotherCut)
{
    const auto volume = block(Red);
    MarchingCubeSurface smooth(volume.get());
    OctreeSurface blocks(volume.get());
    drawSurface(smooth);
    EXPECT_EQ(pixelsOf(red), 0);
    drawSurface(blocks);
    EXPECT_EQ(pixelsOf(red), 0);
    for (const std::uint32_t upper : {6u, 3u, 0u, 5u}) {
        SCOPED_TRACE(upper);
        smooth.rebuild({0, 0, 0}, {upper, 6, 6});
        drawSurface(smooth);
        // The last filled corner is at the limit, or inside the volume.
        const int width = upper == 0 ? 0 : upper == 6 ? 50 : static_cast<int>(upper) * 10;
        EXPECT_EQ(pixelsOf(red, {-1.95, 2.95, 0}, {8.05, 2.95, 0}), width);
        blocks.rebuild({0, 0, 0}, {upper, 6, 6});
        drawSurface(blocks);
        EXPECT_EQ(pixelsOf(red), static_cast<int>(upper) * 600);
    }
}

TEST_F(SurfacePictureTest, BlocksShowOpaqueAndTransparentFacesApart)
{
    const auto volume =
        makeVolume(Grid{4, 4, 4}, [](auto, auto, auto z) { return z < 2 ? Red : Glass; });
    OctreeSurface surface(volume.get());
    surface.rebuild({0, 0, 0}, {4, 4, 4});
    drawSurface(surface);
    EXPECT_EQ(pixelsOf(red), 1600);
    glEnable(GL_BLEND);
    drawSurface(surface, false, false);
    glDisable(GL_BLEND);
    const Color blended = over(background(), {glassColor[0], glassColor[1], glassColor[2], 0.5});
    EXPECT_EQ(pixelsOf(blended), 1600);
}

TEST_F(SurfacePictureTest, EdgesOfBlocksAreUnlitLinesAroundTheirFaces)
{
    const auto volume = makeVolume(Grid{4, 4, 4}, [](auto...) { return Red; });
    OctreeSurface surface(volume.get());
    surface.rebuild({0, 0, 0}, {4, 4, 4});
    glDepthFunc(GL_LEQUAL);
    lightFrom(-1);
    drawSurface(surface, false);
    EXPECT_EQ(pixelsOf(red), 0);
    drawSurface(surface, true);
    endLight();
    // One block, so no lines inside.
    EXPECT_EQ(pixelsOf(red, {0.35, 2.05, 0}, {3.65, 2.05, 0}), 0);
    EXPECT_EQ(pixelsOf(red, {-0.95, 2.05, 0}, {4.95, 2.05, 0}), 4);
    expectColorAt(2.05, 2.05, 4, black);
}

TEST_F(SurfacePictureTest, BlocksTakeNewColorsWhenTheyAreRefreshed)
{
    const auto volume = block(Red);
    OctreeSurface surface(volume.get());
    surface.rebuild({0, 0, 0}, Whole);
    drawSurface(surface);
    EXPECT_EQ(pixelsOf(red), 3600);
    setMaterial(Red, {0.1f, 0.2f, 0.9f, 1.0f});
    drawSurface(surface);
    EXPECT_EQ(pixelsOf(red), 3600);
    surface.refreshColors();
    drawSurface(surface);
    EXPECT_EQ(pixelsOf(blue), 3600);
    setMaterial(Red, {0.9f, 0.1f, 0.2f, 1.0f});
    surface.refreshColors();
    volume->setSelected(true);
    surface.refreshColors();
    drawSurface(surface);
    EXPECT_EQ(pixelsOf(highlightedRed), 3600);
    volume->setSelected(false);
    surface.refreshColors();
    drawSurface(surface);
    EXPECT_EQ(pixelsOf(red), 3600);
}
