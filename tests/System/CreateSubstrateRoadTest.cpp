#include "Support/Volumes.h"
#include "Support/WindowDriver.h"

#include "Core/Workspace.h"
#include "Model/Automaton/TotalVolume.h"
#include "UI/GLWidget.h"
#include "UI/MainWindow.h"

#include <QAction>

#include <gtest/gtest.h>

namespace {

using Model::Automaton::TotalVolume;
using Support::DialogAnswer;
using Support::Grid;

/// From the menu entry to the cells and the picture.
class CreateSubstrateRoadTest : public testing::Test
{
protected:
    void create(const DialogAnswer &answer)
    {
        m_driver.trigger("actionCreate_Substrate", {DialogAnswer(answer).accept()});
    }

    void expectGrid(const TotalVolume &volume, const Grid &grid)
    {
        EXPECT_EQ(volume.sizeX(), grid.sizeX);
        EXPECT_EQ(volume.sizeY(), grid.sizeY);
        EXPECT_EQ(volume.sizeZ(), grid.sizeZ);
        EXPECT_EQ(volume.cellSizeX(), 1.0f);
        EXPECT_EQ(volume.cellSizeY(), 1.0f);
        EXPECT_EQ(volume.cellSizeZ(), 1.0f);
    }

    Support::WindowDriver m_driver;
};

TEST_F(CreateSubstrateRoadTest, DefaultValuesFillTheThirtyLowestLayersWithSilicon)
{
    create(DialogAnswer());
    ASSERT_EQ(m_driver.volumes().size(), 1u);
    const Grid grid{100, 100, 80};
    expectGrid(*m_driver.volumes().front(), grid);
    const auto wanted = Support::materialsBy(
        grid, [](std::uint32_t, std::uint32_t, std::uint32_t z) { return z < 30 ? 1u : 0u; });
    EXPECT_TRUE(m_driver.materials() == wanted);
    EXPECT_TRUE(Support::nextMaterialsOf(*m_driver.volumes().front()) == wanted);
    EXPECT_EQ(m_driver.consoleLines(),
              QStringList("Create Substrate: substrate created successfully."));
    EXPECT_FALSE(m_driver.workspace().currentOperation());
}

TEST_F(CreateSubstrateRoadTest, UndoTakesTheVolumeOutAndRedoPutsTheSameOneBack)
{
    create(DialogAnswer());
    const auto volume = m_driver.volumes().front();
    EXPECT_EQ(m_driver.action("actionUndo").text(), "Undo Create Substrate");
    m_driver.press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_TRUE(m_driver.volumes().empty());
    EXPECT_EQ(m_driver.picture().pixelColor(m_driver.viewCenter() + QPoint(30, -30)),
              QColor(Qt::black));
    EXPECT_EQ(m_driver.action("actionRedo").text(), "Redo Create Substrate");
    m_driver.press(Qt::Key_Y, Qt::ControlModifier);
    ASSERT_EQ(m_driver.volumes().size(), 1u);
    EXPECT_EQ(m_driver.volumes().front(), volume);
    EXPECT_NE(m_driver.picture().pixelColor(m_driver.viewCenter() + QPoint(30, -30)),
              QColor(Qt::black));
}

TEST_F(CreateSubstrateRoadTest, ASphereReachesExactlyItsRadiusFromItsCentre)
{
    create(DialogAnswer()
               .type("sbxTotalWidth", "30")
               .type("sbxTotalLength", "20")
               .type("sbxTotalHeight", "25")
               .choose("cbxMaterial", "Au (bulk)")
               .check("cbxSpherical")
               .type("sbxSubsRadius", "9")
               .type("sbxSubsCenterX", "12")
               .type("sbxSubsCenterY", "10")
               .type("sbxSubsCenterZ", "3"));
    const Grid grid{30, 20, 25};
    expectGrid(*m_driver.volumes().front(), grid);
    const auto square = [](std::uint32_t cell, int center) {
        const int d = static_cast<int>(cell) - center;
        return d * d;
    };
    EXPECT_TRUE(m_driver.materials() ==
                Support::materialsBy(grid, [&](std::uint32_t x, std::uint32_t y, std::uint32_t z) {
                    return square(x, 12) + square(y, 10) + square(z, 3) <= 81 ? 9u : 0u;
                }));
}

TEST_F(CreateSubstrateRoadTest, TheDefaultCentreYieldsOneOctantOfASphere)
{
    create(DialogAnswer()
               .type("sbxTotalWidth", "20")
               .type("sbxTotalLength", "20")
               .type("sbxTotalHeight", "20")
               .check("cbxSpherical")
               .type("sbxSubsRadius", "10"));
    const Grid grid{20, 20, 20};
    EXPECT_TRUE(m_driver.materials() ==
                Support::materialsBy(grid, [](std::uint32_t x, std::uint32_t y, std::uint32_t z) {
                    return x * x + y * y + z * z <= 100 ? 1u : 0u;
                }));
}

TEST_F(CreateSubstrateRoadTest, ABoxThatReachesBeyondTheVolumeIsClipped)
{
    // The height of the box is not bounded until the total height changes.
    create(DialogAnswer()
               .type("sbxTotalWidth", "12")
               .type("sbxTotalLength", "10")
               .type("sbxSubsWidth", "5")
               .type("sbxSubsX", "7")
               .type("sbxSubsHeight", "500"));
    const Grid grid{12, 10, 80};
    expectGrid(*m_driver.volumes().front(), grid);
    EXPECT_TRUE(m_driver.materials() ==
                Support::materialsBy(grid, [](std::uint32_t x, std::uint32_t, std::uint32_t) {
                    return x >= 7 ? 1u : 0u;
                }));
}

TEST_F(CreateSubstrateRoadTest, APositionPlacesTheVolumeInTheView)
{
    create(DialogAnswer()
               .type("sbxTotalWidth", "40")
               .type("sbxTotalLength", "40")
               .type("dblPositionX", "-200")
               .type("dblPositionY", "100"));
    const QImage picture = m_driver.picture();
    const QPoint center = m_driver.viewCenter();
    EXPECT_NE(picture.pixelColor(center + QPoint(-180, -120)), QColor(Qt::black));
    EXPECT_EQ(picture.pixelColor(center + QPoint(20, -20)), QColor(Qt::black));
    EXPECT_EQ(m_driver.volumes().front()->position()[0], -200.0);
    EXPECT_EQ(m_driver.volumes().front()->position()[1], 100.0);
}

TEST_F(CreateSubstrateRoadTest, ACancelledDialogLeavesNothingBehind)
{
    m_driver.trigger("actionCreate_Substrate", {DialogAnswer().reject()});
    EXPECT_TRUE(m_driver.volumes().empty());
    EXPECT_TRUE(m_driver.consoleLines().isEmpty());
    EXPECT_FALSE(m_driver.workspace().currentOperation());
    EXPECT_FALSE(m_driver.action("actionUndo").isEnabled());
}

TEST_F(CreateSubstrateRoadTest, AChangedTotalPullsTheSizeAlongAndHoldsTheDisplacementAtZero)
{
    int size = 0;
    int displacement = -1;
    int highest = -1;
    create(DialogAnswer()
               .type("sbxTotalWidth", "50")
               .type("sbxSubsX", "20")
               .look([&](QWidget &dialog) {
                   size = dialog.findChild<QWidget *>("sbxSubsWidth")->property("value").toInt();
                   const auto *box = dialog.findChild<QWidget *>("sbxSubsX");
                   displacement = box->property("value").toInt();
                   highest = box->property("maximum").toInt();
               }));
    EXPECT_EQ(size, 50);
    EXPECT_EQ(highest, 0);
    EXPECT_EQ(displacement, 0);
}

TEST_F(CreateSubstrateRoadTest, AChangedTotalHeightKeepsTheSizeAndAllowsTheRestAsDisplacement)
{
    int highest = 0;
    create(DialogAnswer()
               .type("sbxTotalHeight", "50")
               .look([&](QWidget &dialog) {
                   highest = dialog.findChild<QWidget *>("sbxSubsZ")->property("maximum").toInt();
               })
               .type("sbxSubsZ", "20"));
    EXPECT_EQ(highest, 20);
    const Grid grid{100, 100, 50};
    expectGrid(*m_driver.volumes().front(), grid);
    EXPECT_TRUE(m_driver.materials() ==
                Support::materialsBy(grid, [](std::uint32_t, std::uint32_t, std::uint32_t z) {
                    return z >= 20 ? 1u : 0u;
                }));
}

} // namespace
