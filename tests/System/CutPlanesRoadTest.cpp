#include "System/WaferRoad.h"

#include <QSlider>
#include <QTest>

#include <cstddef>

namespace {

using Support::DialogAnswer;

class CutPlanesRoadTest : public WaferRoad
{
protected:
    std::size_t faces() { return m_driver.volumes().front()->painter().opaqueFaces().size(); }
    /// The outer faces of a box of cells.
    static std::size_t boxFaces(std::size_t x, std::size_t y, std::size_t z)
    {
        return 2 * (x * y + y * z + z * x);
    }
};

TEST_F(CutPlanesRoadTest, ACutShowsLessOfTheWaferAndChangesNoCell)
{
    const QImage whole = m_driver.picture();
    run("actionCut_Cell_Volume",
        DialogAnswer().type("sbxXLowerLimit", "10").type("sbxZUpperLimit", "5").accept());
    EXPECT_EQ(faces(), boxFaces(30, 30, 5));
    EXPECT_NE(m_driver.picture(), whole);
    expectLayers(12);
    EXPECT_EQ(lastLines(2), (QStringList{"Change Cut Planes: Cell volume selected.",
                                         "Change Cut Planes: Cut planes changed."}));
    EXPECT_TRUE(idle());
    EXPECT_EQ(undoText(), "Undo Create Substrate");
    // Reset brings the same picture back.
    run("actionCut_Cell_Volume", DialogAnswer().click("btnReset").accept());
    EXPECT_EQ(faces(), boxFaces(40, 30, 12));
    EXPECT_EQ(m_driver.picture(), whole);
}

TEST_F(CutPlanesRoadTest, TheVolumeCanBePickedAtThePrompt)
{
    m_driver.trigger("actionCut_Cell_Volume");
    EXPECT_EQ(lastLines(1),
              QStringList("Change Cut Planes: Select a cell volume and press Enter/Return."));
    m_driver.press(Qt::Key_Return);
    EXPECT_EQ(m_driver.consoleLines().count(lastLines(1).first()), 2);
    pick();
    m_driver.answering({DialogAnswer().type("sbxYUpperLimit", "4").accept()},
                       [this] { m_driver.press(Qt::Key_Return); });
    EXPECT_EQ(faces(), boxFaces(40, 4, 12));
}

TEST_F(CutPlanesRoadTest, EscapeAtThePromptCancels)
{
    m_driver.trigger("actionCut_Cell_Volume");
    m_driver.press(Qt::Key_Escape);
    EXPECT_EQ(lastLines(1), QStringList("Change Cut Planes: Operation Canceled!"));
    EXPECT_TRUE(idle());
}

TEST_F(CutPlanesRoadTest, ThePreviewIsInTheViewWhileTheDialogIsOpenAndCancelTakesItBack)
{
    const QImage whole = m_driver.picture();
    QImage cut;
    run("actionCut_Cell_Volume",
        DialogAnswer()
            .check("cbxPreview")
            .look([&](QWidget &dialog) {
                for (int i = 0; i < 3; ++i)
                    QTest::keyClick(dialog.findChild<QSlider *>("sldXUpperLimit"),
                                    Qt::Key_PageDown);
                EXPECT_EQ(faces(), boxFaces(10, 30, 12));
                cut = m_driver.picture();
            })
            .reject());
    EXPECT_NE(cut, whole);
    EXPECT_EQ(m_driver.picture(), whole);
    EXPECT_EQ(faces(), boxFaces(40, 30, 12));
    EXPECT_EQ(lastLines(1), QStringList("Change Cut Planes: Operation Canceled!"));
    EXPECT_TRUE(idle());
}

TEST_F(CutPlanesRoadTest, TheCutStaysWhileProcessesChangeTheWafer)
{
    run("actionCut_Cell_Volume", DialogAnswer().type("sbxXUpperLimit", "20").accept());
    run("actionSpin_Coating",
        DialogAnswer().choose("cbxMaterial", "Au (bulk)").type("sbxHeight", "20").accept());
    expectLayers(12, 8);
    EXPECT_EQ(faces(), boxFaces(20, 30, 20));
}

TEST_F(CutPlanesRoadTest, ALayerOfOneCellCanBeCutOut)
{
    run("actionCut_Cell_Volume", DialogAnswer()
                                     .type("sbxXLowerLimit", "39")
                                     .type("sbxYUpperLimit", "1")
                                     .type("sbxZUpperLimit", "1")
                                     .accept());
    EXPECT_EQ(faces(), 6U);
}

} // namespace
