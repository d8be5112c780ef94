#include "Model/Automaton/MarchingCubeSurface.h"
#include "Model/Automaton/TotalVolume.h"
#include "Model/Materials/MaterialFactory.h"

#include "GlTestSupport.h"
#include "Support/Volumes.h"

#include <QString>

#include <boost/shared_ptr.hpp>

#include <gtest/gtest.h>

#include <GL/gl.h>

#include <array>
#include <cstdint>

using Model::Automaton::MarchingCubeSurface;
using Model::Automaton::TotalVolume;
using Model::Materials::Material;
using Model::Materials::MaterialFactory;
using Support::makeVolume;

namespace {

constexpr std::uint32_t Red = 70;
constexpr std::uint32_t Glass = 72;
constexpr std::uint32_t Unknown = 4000000000U;

/// A film of 5 x 5 corners, from 0.5 to 5.5 across, over void; left and right of x = 3.5 another
/// material.
class MarchingCubePictureTest : public GlTest
{
protected:
    void SetUp() override
    {
        GlTest::SetUp();
        setMaterial(Red, {0.9f, 0.1f, 0.2f, 1.0f});
        setMaterial(Glass, {0.3f, 0.6f, 0.9f, 0.5f});
    }
    void TearDown() override
    {
        m_registry->loadDefaultMaterials();
        GlTest::TearDown();
    }

    void setMaterial(std::uint32_t id, const std::array<float, 4> &color)
    {
        ASSERT_TRUE(m_registry->updateMaterial(
            Material(id, QStringLiteral("Test"), 1.0f, 1.0f, 1.0f, color.data())));
    }

    static boost::shared_ptr<TotalVolume> film(std::uint32_t left, std::uint32_t right)
    {
        return makeVolume({7, 7, 4},
                          [left, right](std::uint32_t x, std::uint32_t y, std::uint32_t z) {
                              if (z != 2 || x > 5 || y > 5)
                                  return 0U;
                              return x <= 3 ? left : right;
                          });
    }

    /// Draws with blending on, so that an alpha would show.
    void drawSurface(MarchingCubeSurface &surface, bool edges = false)
    {
        draw([&] {
            glEnable(GL_BLEND);
            surface.draw(edges);
            glDisable(GL_BLEND);
        });
    }

    boost::shared_ptr<MaterialFactory> m_registry = MaterialFactory::instance();
};

TEST_F(MarchingCubePictureTest, TransparentMaterialIsDrawnOpaque)
{
    const auto volume = film(Red, Glass);
    MarchingCubeSurface surface(volume.get());
    surface.rebuild({0, 0, 0}, {7, 7, 4});
    drawSurface(surface);
    expectColorAt(1.95, 2.45, 2.5, {0.9, 0.1, 0.2});
    expectColorAt(4.45, 2.45, 2.5, {0.3, 0.6, 0.9});
    expectColorAt(0.25, 2.45, 2.5, background());
    expectColorAt(5.75, 2.45, 2.5, background());
}

TEST_F(MarchingCubePictureTest, ColorsAndSelectionShowWithoutARebuild)
{
    const auto volume = film(Red, Glass);
    MarchingCubeSurface surface(volume.get());
    surface.rebuild({0, 0, 0}, {7, 7, 4});
    drawSurface(surface);
    setMaterial(Red, {0.0f, 1.0f, 0.5f, 1.0f});
    drawSurface(surface);
    expectColorAt(1.95, 2.45, 2.5, {0.0, 1.0, 0.5});
    volume->setSelected(true);
    drawSurface(surface);
    expectColorAt(1.95, 2.45, 2.5, {0.3, 0.3, 0.8});
    expectColorAt(4.45, 2.45, 2.5, {0.6, 0.9, 0.2});
    volume->setSelected(false);
    drawSurface(surface);
    expectColorAt(1.95, 2.45, 2.5, {0.0, 1.0, 0.5});
}

TEST_F(MarchingCubePictureTest, EdgeFlagHasNoEffect)
{
    const auto volume = film(Red, Red);
    MarchingCubeSurface surface(volume.get());
    surface.rebuild({0, 0, 0}, {7, 7, 4});
    drawSurface(surface, false);
    const int plain = pixelsOf({0.9, 0.1, 0.2});
    const int behind = pixelsOf(background());
    EXPECT_GT(plain, 0);
    EXPECT_EQ(plain + behind, GlCanvas::Side * GlCanvas::Side);
    drawSurface(surface, true);
    EXPECT_EQ(pixelsOf({0.9, 0.1, 0.2}), plain);
    EXPECT_EQ(pixelsOf(background()), behind);
}

TEST_F(MarchingCubePictureTest, MaterialThatTheRegistryLacksIsDrawnAllTheSame)
{
    const auto volume = film(Unknown, Glass);
    MarchingCubeSurface surface(volume.get());
    surface.rebuild({0, 0, 0}, {7, 7, 4});
    const int allPixels = GlCanvas::Side * GlCanvas::Side;
    drawSurface(surface);
    EXPECT_EQ(pixelsOf(background(), {0.95, 1.45, 0}, {2.55, 3.55, 0}), 0);
    EXPECT_LT(pixelsOf(background()), allPixels - 400);
    expectColorAt(4.45, 2.45, 2.5, {0.3, 0.6, 0.9});
}

TEST_F(MarchingCubePictureTest, SecondRebuildReplacesThePicture)
{
    const auto volume = film(Red, Red);
    MarchingCubeSurface surface(volume.get());
    surface.rebuild({0, 0, 0}, {7, 7, 4});
    drawSurface(surface);
    expectColorAt(4.45, 2.45, 2.5, {0.9, 0.1, 0.2});
    surface.rebuild({0, 0, 0}, {2, 7, 4});
    drawSurface(surface);
    expectColorAt(1.95, 2.45, 2.5, {0.9, 0.1, 0.2});
    expectColorAt(4.45, 2.45, 2.5, background());
    surface.rebuild({3, 3, 3}, {3, 3, 3});
    drawSurface(surface);
    EXPECT_EQ(pixelsOf(background()), GlCanvas::Side * GlCanvas::Side);
}

} // namespace
