#include "Support/WindowDriver.h"

#include "Core/Workspace.h"
#include "Model/Automaton/TotalVolume.h"
#include "UI/GLWidget.h"
#include "UI/MainWindow.h"

#include <QAction>

#include <gtest/gtest.h>

#include <cmath>

namespace {

using Support::DialogAnswer;
using Util::Vector3D;

/// Moving, copying and deleting in the window, with a block of 60 by 60 at the middle of the view.
class EditRoadTest : public testing::Test
{
protected:
    EditRoadTest()
    {
        m_driver.trigger(
            "actionCreate_Substrate",
            {DialogAnswer().type("sbxTotalWidth", "60").type("sbxTotalLength", "60").accept()});
    }

    QPoint at(int x, int y) { return m_driver.viewCenter() + QPoint(x, -y); }
    void select()
    {
        m_driver.trigger("actionSelect");
        m_driver.click(at(30, 30));
    }
    bool shown(int x, int y)
    {
        return m_driver.picture().pixelColor(at(x, y)) != QColor(Qt::black);
    }
    void expectPosition(std::size_t volume, double x, double y, double z = 0.0)
    {
        const Vector3D position = m_driver.volumes().at(volume)->position();
        EXPECT_NEAR(position[0], x, 1e-3);
        EXPECT_NEAR(position[1], y, 1e-3);
        EXPECT_NEAR(position[2], z, 1e-3);
    }
    QString lastLine() { return m_driver.consoleLines().last(); }

    Support::WindowDriver m_driver;
};

TEST_F(EditRoadTest, ATypedDistanceMovesTheSelection)
{
    select();
    m_driver.trigger("actionMove");
    EXPECT_EQ(lastLine(), "Move: Left click or enter the distance into the console (x, y, z):");
    m_driver.typeIntoConsole("120,-40,5");
    expectPosition(0, 120, -40, 5);
    EXPECT_EQ(lastLine(), "Move: Object(s) moved");
    EXPECT_EQ(m_driver.action("actionUndo").text(), "Undo Move Objects");
    EXPECT_TRUE(shown(150, -10));
    EXPECT_FALSE(shown(30, 30));
}

TEST_F(EditRoadTest, ParenthesesAroundTheDistanceFailAndTheMoveGoesOn)
{
    select();
    m_driver.trigger("actionMove");
    m_driver.typeIntoConsole("(1,2,3)");
    EXPECT_EQ(lastLine(), "Invalid entry. Enter the x, y, z coordinates.");
    m_driver.typeIntoConsole("1,2,3");
    expectPosition(0, 1, 2, 3);
}

TEST_F(EditRoadTest, UndoOfTwoMovesRestoresEachDistanceInTurn)
{
    select();
    m_driver.trigger("actionMove");
    m_driver.typeIntoConsole("100,0,0");
    m_driver.trigger("actionSelect");
    m_driver.click(at(130, 30));
    m_driver.trigger("actionMove");
    m_driver.typeIntoConsole("0,50,0");
    expectPosition(0, 100, 50);
    m_driver.trigger("actionUndo");
    expectPosition(0, 100, 0);
    EXPECT_TRUE(shown(130, 10));
    m_driver.trigger("actionUndo");
    expectPosition(0, 0, 0);
    m_driver.trigger("actionRedo");
    m_driver.trigger("actionRedo");
    expectPosition(0, 100, 50);
}

TEST_F(EditRoadTest, TwoClicksMoveByTheirDistanceWithNoPreviewInBetween)
{
    // All clicks on the background, at one depth.
    select();
    m_driver.trigger("actionMove");
    const QImage before = m_driver.picture();
    m_driver.click(at(-100, 0));
    EXPECT_EQ(lastLine(), "Move: Left click on destination.");
    for (const QPoint &to : {at(-120, 10), at(-150, 20)}) {
        m_driver.movePointer(to);
        EXPECT_EQ(m_driver.picture(), before);
    }
    expectPosition(0, 0, 0);
    EXPECT_TRUE(m_driver.volumes().front()->isMoving());
    EXPECT_NEAR(m_driver.volumes().front()->displacement()[0], -50, 1e-3);
    // A right press keeps dragging.
    m_driver.click(at(-160, 40), Qt::RightButton);
    expectPosition(0, 0, 0);
    EXPECT_EQ(m_driver.picture(), before);
    m_driver.click(at(-180, 50));
    expectPosition(0, -80, 50);
    EXPECT_NE(m_driver.picture(), before);
}

TEST_F(EditRoadTest, SnapToGridMovesByWholeGridSpacings)
{
    m_driver.trigger("actionSnap_to_Grid");
    select();
    m_driver.trigger("actionMove");
    m_driver.click(at(-103, 2));
    m_driver.click(at(-148, 33));
    const Vector3D position = m_driver.volumes().front()->position();
    EXPECT_EQ(std::remainder(position[0], 10.0), 0.0);
    EXPECT_EQ(std::remainder(position[1], 10.0), 0.0);
    EXPECT_NEAR(position[0], -45, 10.0);
    EXPECT_EQ(position[2], 0.0);
}

TEST_F(EditRoadTest, EscapeDuringAMoveLeavesTheObjectsAndTheMessageComesTwice)
{
    select();
    m_driver.trigger("actionMove");
    m_driver.press(Qt::Key_Escape);
    EXPECT_EQ(lastLine(), "Move: Operation canceled");
    EXPECT_TRUE(m_driver.workspace().currentOperation());
    m_driver.typeIntoConsole("10,10,10");
    expectPosition(0, 0, 0);
    m_driver.trigger("actionDelete");
    EXPECT_EQ(m_driver.consoleLines().count("Move: Operation canceled"), 2);
    EXPECT_EQ(m_driver.action("actionUndo").text(), "Undo Create Substrate");
}

TEST_F(EditRoadTest, UndoWhileAMoveRunsCancelsItFirst)
{
    select();
    m_driver.trigger("actionMove");
    m_driver.trigger("actionUndo");
    EXPECT_EQ(lastLine(), "Move: Operation canceled");
    EXPECT_TRUE(m_driver.volumes().empty());
}

TEST_F(EditRoadTest, ATypedDistanceCopiesTheSelectionWithItsPicture)
{
    select();
    const auto original = m_driver.volumes().front();
    m_driver.trigger("actionCopy");
    EXPECT_EQ(lastLine(), "Copy: Left click or enter the distance into the console (x, y, z):");
    m_driver.typeIntoConsole("120,0,0");
    EXPECT_EQ(lastLine(), "Copy: Object(s) copied");
    ASSERT_EQ(m_driver.volumes().size(), 2u);
    EXPECT_EQ(m_driver.volumes().front(), original);
    expectPosition(0, 0, 0);
    expectPosition(1, 120, 0);
    EXPECT_TRUE(m_driver.materials(0) == m_driver.materials(1));
    EXPECT_TRUE(shown(30, 30));
    EXPECT_TRUE(shown(150, 30));
    m_driver.trigger("actionUndo");
    EXPECT_EQ(m_driver.volumes().size(), 1u);
    EXPECT_FALSE(shown(150, 30));
    m_driver.trigger("actionRedo");
    EXPECT_EQ(m_driver.volumes().size(), 2u);
    EXPECT_TRUE(shown(150, 30));
}

TEST_F(EditRoadTest, DeleteOfASelectionTakesOneActionAndUndoBringsItBack)
{
    select();
    const auto volume = m_driver.volumes().front();
    m_driver.trigger("actionDelete");
    EXPECT_EQ(lastLine(), "Delete: objects deleted.");
    EXPECT_TRUE(m_driver.volumes().empty());
    EXPECT_FALSE(shown(30, 30));
    m_driver.trigger("actionUndo");
    ASSERT_EQ(m_driver.volumes().size(), 1u);
    EXPECT_EQ(m_driver.volumes().front(), volume);
    EXPECT_TRUE(shown(30, 30));
    m_driver.trigger("actionRedo");
    EXPECT_TRUE(m_driver.volumes().empty());
}

TEST_F(EditRoadTest, DeleteWithoutASelectionAsksForOne)
{
    m_driver.trigger("actionDelete");
    EXPECT_EQ(lastLine(), "Delete: Select the objects to be deleted and press Return/Enter");
    m_driver.click(at(30, 30));
    m_driver.press(Qt::Key_Enter);
    EXPECT_TRUE(m_driver.volumes().empty());
}

TEST_F(EditRoadTest, AnUndoneSubstrateLeavesTheSelectionSoThatNoProcessRunsOnIt)
{
    select();
    m_driver.trigger("actionUndo");
    EXPECT_TRUE(m_driver.workspace().pointer().selectedObjects().empty());
}

TEST_F(EditRoadTest, TheBatchPromptAsksAgainUntilTheAnswerBeginsWithN)
{
    const QString prompt = "Select volumes: Select a cell volume and press Enter/Return. To start "
                           "without a cell volume type N and press Enter/Return.";
    m_driver.trigger("actionBatch_Run");
    EXPECT_EQ(lastLine(), prompt);
    m_driver.typeIntoConsole("yes");
    EXPECT_EQ(m_driver.consoleLines().count(prompt), 2);
    m_driver.press(Qt::Key_Return);
    EXPECT_EQ(m_driver.consoleLines().count(prompt), 3);
    m_driver.answering(
        {DialogAnswer()
             .look([](QWidget &dialog) { EXPECT_EQ(dialog.windowTitle(), "Batch Run"); })
             .click("btnClose")},
        [this] { m_driver.typeIntoConsole("no"); });
    EXPECT_EQ(m_driver.consoleLines().count(prompt), 3);
    EXPECT_FALSE(m_driver.workspace().currentOperation());
    EXPECT_EQ(m_driver.action("actionUndo").text(), "Undo Create Substrate");
}

} // namespace
