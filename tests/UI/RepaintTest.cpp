#include "Support/WindowDriver.h"

#include "UI/GLWidget.h"

#include <gtest/gtest.h>

namespace {

using Support::DialogAnswer;

/// What stands on the screen with no repaint but the program's own.
class RepaintTest : public testing::Test
{
protected:
    RepaintTest()
    {
        m_driver.trigger("actionCreate_Substrate", {DialogAnswer().accept()});
        // Unlit, silicon is half grey, and 0.3 lighter when it is selected.
        m_driver.trigger("actionLighting");
    }

    QPoint onSubstrate() { return m_driver.viewCenter() + QPoint(30, -30); }
    int shade()
    {
        return m_driver.screen().pixelColor(m_driver.view().mapToGlobal(onSubstrate())).red();
    }
    void select()
    {
        m_driver.trigger("actionSelect");
        m_driver.click(onSubstrate());
        ASSERT_NEAR(shade(), 204, 1);
    }

    Support::WindowDriver m_driver;
};

TEST_F(RepaintTest, EscapeTakesTheHighlightOffTheScreen)
{
    select();
    m_driver.press(Qt::Key_Escape);
    EXPECT_NEAR(shade(), 127.5, 1);
}

TEST_F(RepaintTest, TurningSelectionModeOffTakesTheHighlightOffTheScreen)
{
    select();
    m_driver.trigger("actionSelect");
    EXPECT_NEAR(shade(), 127.5, 1);
}

TEST_F(RepaintTest, UndoAndRedoShowOnTheScreen)
{
    m_driver.trigger("actionUndo");
    EXPECT_EQ(shade(), 0);
    m_driver.trigger("actionRedo");
    EXPECT_NEAR(shade(), 127.5, 1);
}

TEST_F(RepaintTest, NewShowsOnTheScreen)
{
    m_driver.trigger("actionNew", {DialogAnswer().accept()});
    EXPECT_EQ(shade(), 0);
}

} // namespace
