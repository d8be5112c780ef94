#include "Support/WindowDriver.h"

#include "Core/Workspace.h"
#include "Model/Automaton/TotalVolume.h"
#include "UI/GLWidget.h"
#include "UI/MainWindow.h"

#include <QAction>

#include <gtest/gtest.h>

namespace {

using Support::DialogAnswer;

/// Picking in the view, with two substrates side by side.
class SelectionRoadTest : public testing::Test
{
protected:
    SelectionRoadTest()
    {
        for (const char *x : {"-200", "100"})
            m_driver.trigger("actionCreate_Substrate", {DialogAnswer()
                                                            .type("sbxTotalWidth", "80")
                                                            .type("sbxTotalLength", "80")
                                                            .type("dblPositionX", x)
                                                            .accept()});
        // Lighting off: a picture then shows a material's colour itself.
        m_driver.trigger("actionLighting");
    }

    QPoint left() { return m_driver.viewCenter() + QPoint(-160, -40); }
    QPoint right() { return m_driver.viewCenter() + QPoint(140, -40); }
    int shade(const QPoint &at) { return m_driver.picture().pixelColor(at).red(); }
    std::vector<std::uint32_t> selectedIds()
    {
        std::vector<std::uint32_t> ids;
        for (const auto &object : m_driver.workspace().pointer().selectedObjects())
            ids.push_back(object->id());
        return ids;
    }
    std::uint32_t idOf(std::size_t volume) { return m_driver.volumes().at(volume)->id(); }

    Support::WindowDriver m_driver;
};

TEST_F(SelectionRoadTest, AClickInSelectionModeTogglesAndHighlights)
{
    m_driver.trigger("actionSelect");
    m_driver.click(left());
    EXPECT_EQ(selectedIds(), std::vector<std::uint32_t>{idOf(0)});
    // Half grey rises by 0.3.
    EXPECT_NEAR(shade(left()), 0.8 * 255, 1.0);
    EXPECT_NEAR(shade(right()), 127.5, 1.0);
    m_driver.click(left());
    EXPECT_TRUE(selectedIds().empty());
    EXPECT_NEAR(shade(left()), 127.5, 1.0);
}

TEST_F(SelectionRoadTest, TheSelectionKeepsTheOrderOfTheClicks)
{
    m_driver.trigger("actionSelect");
    m_driver.click(right());
    m_driver.click(left());
    EXPECT_EQ(selectedIds(), (std::vector<std::uint32_t>{idOf(1), idOf(0)}));
}

TEST_F(SelectionRoadTest, ClickingEmptySpaceKeepsTheSelection)
{
    m_driver.trigger("actionSelect");
    m_driver.click(left());
    m_driver.click(QPoint(5, 5));
    EXPECT_EQ(selectedIds(), std::vector<std::uint32_t>{idOf(0)});
}

TEST_F(SelectionRoadTest, NothingIsPickedOutsideSelectionMode)
{
    m_driver.click(left());
    EXPECT_TRUE(selectedIds().empty());
}

TEST_F(SelectionRoadTest, TurningSelectionModeOffClearsTheSelection)
{
    m_driver.trigger("actionSelect");
    m_driver.click(left());
    m_driver.trigger("actionSelect");
    EXPECT_TRUE(selectedIds().empty());
    EXPECT_NEAR(shade(left()), 127.5, 1.0);
}

TEST_F(SelectionRoadTest, EscapeClearsTheSelectionAndRepaints)
{
    m_driver.trigger("actionSelect");
    m_driver.click(left());
    m_driver.click(right());
    m_driver.press(Qt::Key_Escape);
    EXPECT_TRUE(selectedIds().empty());
    EXPECT_NEAR(shade(left()), 127.5, 1.0);
    EXPECT_NEAR(shade(right()), 127.5, 1.0);
}

TEST_F(SelectionRoadTest, PickingFollowsTheViewHoweverItIsTurnedMovedAndZoomed)
{
    m_driver.trigger("actionFront_View");
    m_driver.trigger("actionTranslate", {DialogAnswer().type("dblDistanceX", "50").accept()});
    m_driver.trigger("actionZoom", {DialogAnswer().type("dblZoom", "50").accept()});
    m_driver.trigger("actionSelect");
    // The right block reaches from 150 to 230 along x and, seen from the front, from 0 to 30 of its
    // 80 cells upward; the pick target is its whole box.
    m_driver.click(m_driver.viewCenter() + QPoint(95, -30));
    EXPECT_EQ(selectedIds(), std::vector<std::uint32_t>{idOf(1)});
    m_driver.click(m_driver.viewCenter() + QPoint(95, -45));
    EXPECT_EQ(selectedIds(), std::vector<std::uint32_t>{idOf(1)});
}

TEST_F(SelectionRoadTest, NewErasesBothAndThePictureIsEmpty)
{
    m_driver.trigger("actionNew", {DialogAnswer().accept()});
    EXPECT_TRUE(m_driver.volumes().empty());
    EXPECT_EQ(shade(left()), 0);
    EXPECT_EQ(shade(right()), 0);
}

} // namespace
