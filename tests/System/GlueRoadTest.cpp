#include "Support/Volumes.h"
#include "Support/WindowDriver.h"

#include "Core/Workspace.h"
#include "Model/Automaton/TotalVolume.h"

#include <QAction>
#include <QColor>
#include <QImage>
#include <QPoint>
#include <QSpinBox>

#include <gtest/gtest.h>

namespace {

using Support::DialogAnswer;

constexpr std::uint32_t Silicon = 1;

/// Two wafers side by side: 20 layers of silicon across 80 x 60 x 40 cells on the left, and on the
/// right a volume of 60 x 60 x 30 with a block of 50 x 60 x 8 at its low x, 6 layers above the
/// floor.
class GlueRoadTest : public testing::Test
{
protected:
    GlueRoadTest()
    {
        m_driver.trigger("actionCreate_Substrate", {DialogAnswer()
                                                        .type("sbxTotalWidth", "80")
                                                        .type("sbxTotalLength", "60")
                                                        .type("sbxTotalHeight", "40")
                                                        .type("sbxSubsHeight", "20")
                                                        .type("dblPositionX", "-200")
                                                        .accept()});
        m_driver.trigger("actionCreate_Substrate", {DialogAnswer()
                                                        .type("sbxTotalWidth", "60")
                                                        .type("sbxTotalLength", "60")
                                                        .type("sbxTotalHeight", "30")
                                                        .type("sbxSubsWidth", "50")
                                                        .type("sbxSubsHeight", "8")
                                                        .type("sbxSubsZ", "6")
                                                        .type("dblPositionX", "100")
                                                        .accept()});
        // Lighting off: a picture then shows a material's colour itself.
        m_driver.trigger("actionLighting");
        m_base = m_driver.volumes().at(0);
        m_top = m_driver.volumes().at(1);
    }

    QPoint left() { return m_driver.viewCenter() + QPoint(-160, -30); }
    QPoint right() { return m_driver.viewCenter() + QPoint(120, -30); }
    bool shown(const QPoint &at) { return m_driver.picture().pixelColor(at) != QColor(Qt::black); }

    /// From the menu to the dialog, with the wafers picked there.
    void glue(const QPoint &base, const QPoint &top, const DialogAnswer &answer)
    {
        m_driver.trigger("actionGlue_Substrate");
        m_driver.click(base);
        m_driver.press(Qt::Key_Return);
        m_driver.click(top);
        m_driver.answering({answer}, [&] { m_driver.press(Qt::Key_Return); });
    }
    void expectSources()
    {
        const auto volumes = m_driver.volumes();
        ASSERT_EQ(volumes.size(), 2u);
        EXPECT_EQ(volumes[0], m_base);
        EXPECT_EQ(volumes[1], m_top);
    }
    QStringList lastLines(int count)
    {
        const QStringList lines = m_driver.consoleLines();
        return lines.mid(lines.size() - count);
    }
    QString undoText() { return m_driver.action("actionUndo").text(); }
    bool idle() { return !m_driver.workspace().currentOperation(); }

    Support::WindowDriver m_driver;
    boost::shared_ptr<Model::Automaton::TotalVolume> m_base;
    boost::shared_ptr<Model::Automaton::TotalVolume> m_top;
};

TEST_F(GlueRoadTest, TwoWafersBecomeOneOnWhichFilmsGrow)
{
    glue(left(), right(), DialogAnswer().type("sbxSizeZ", "35").accept());
    ASSERT_EQ(m_driver.volumes().size(), 1u);
    const auto glued = m_driver.volumes().front();
    EXPECT_EQ(glued->sizeX(), 80u);
    EXPECT_EQ(glued->sizeY(), 60u);
    EXPECT_EQ(glued->sizeZ(), 35u);
    EXPECT_TRUE(m_driver.materials() ==
                Support::materialsBy({80, 60, 35}, [](auto x, auto, auto z) {
                    return z < 20 || (z < 28 && x < 50) ? Silicon : 0u;
                }));
    EXPECT_EQ(lastLines(5),
              (QStringList{
                  "Glue Volumes: select the base cell volume and press Enter/Return.",
                  "Glue Volumes: base cell volume selected. Select top cell volume and press enter",
                  "Glue Volumes: select the top cell volume and press Enter/Return.",
                  "Glue Volumes: top cell volume selected.", "Extract Film: film extracted."}));
    EXPECT_TRUE(idle());
    EXPECT_FALSE(m_driver.action("actionSelect").isChecked());
    EXPECT_EQ(undoText(), "Undo Glue Volumes");
    // Neither the sources nor the result are drawn, until its surfaces are built; but it is picked.
    EXPECT_FALSE(shown(left()));
    EXPECT_FALSE(shown(right()));
    m_driver.trigger("actionSelect");
    m_driver.click(left());
    m_driver.trigger("actionElectrodeposition", {DialogAnswer()
                                                     .choose("cbxMaterial", "Au (bulk)")
                                                     .choose("cbxConductingMaterial", "Si")
                                                     .type("dblThickness", "2")
                                                     .accept()});
    EXPECT_TRUE(shown(left()));
    EXPECT_EQ(m_driver.materials()[(10 * 60 + 10) * 35 + 29], 9u);
    EXPECT_EQ(m_driver.materials()[(10 * 60 + 10) * 35 + 30], 0u);
    EXPECT_EQ(m_driver.materials()[(70 * 60 + 10) * 35 + 21], 9u);
}

TEST_F(GlueRoadTest, TheTopIsMovedAndTurnedOverAsTheDialogSays)
{
    glue(left(), right(),
         DialogAnswer().type("sbxDisplacementX", "15").check("chkInvertTopSubstrate").accept());
    ASSERT_EQ(m_driver.volumes().size(), 1u);
    // The block reaches from 10 to 60 of the turned top.
    EXPECT_TRUE(m_driver.materials() ==
                Support::materialsBy({80, 60, 28}, [](auto x, auto, auto z) {
                    return z < 20 || (x >= 25 && x < 75) ? Silicon : 0u;
                }));
}

TEST_F(GlueRoadTest, TheDialogHasTheLimitsOfTheTwoWafers)
{
    std::vector<int> limits;
    glue(left(), right(),
         DialogAnswer()
             .look([&](QWidget &dialog) {
                 for (const char *name : {"sbxSizeX", "sbxSizeY", "sbxSizeZ"})
                     limits.push_back(dialog.findChild<QSpinBox *>(name)->minimum());
                 for (const char *name : {"sbxDisplacementX", "sbxDisplacementY"})
                     limits.push_back(dialog.findChild<QSpinBox *>(name)->maximum());
             })
             .reject());
    EXPECT_EQ(limits, (std::vector<int>{80, 60, 28, 20, 0}));
}

TEST_F(GlueRoadTest, AWaferThatIsSelectedBeforehandIsTheBase)
{
    m_driver.trigger("actionSelect");
    m_driver.click(right());
    m_driver.trigger("actionGlue_Substrate");
    EXPECT_EQ(lastLines(1),
              QStringList("Glue Volumes: select the top cell volume and press Enter/Return."));
    EXPECT_TRUE(m_driver.action("actionSelect").isChecked());
    m_driver.click(left());
    m_driver.answering({DialogAnswer().accept()}, [&] { m_driver.press(Qt::Key_Enter); });
    ASSERT_EQ(m_driver.volumes().size(), 1u);
    // It stands where the base stood.
    EXPECT_EQ(m_driver.volumes().front()->position()[0], 100.0);
    EXPECT_EQ(m_driver.volumes().front()->sizeZ(), 14u + 20u);
}

TEST_F(GlueRoadTest, ARejectedDialogLeavesTheOperationWaitingUntilTheNextOneStarts)
{
    glue(left(), right(), DialogAnswer().reject());
    EXPECT_FALSE(idle());
    EXPECT_EQ(lastLines(1), QStringList("Glue Volumes: top cell volume selected."));
    expectSources();
    // Enter does nothing more.
    m_driver.press(Qt::Key_Return);
    EXPECT_FALSE(idle());
    m_driver.trigger("actionPVD");
    EXPECT_EQ(lastLines(2),
              (QStringList{"Glue Volumes: top cell volume selected.",
                           "Isotropic Deposition: Select a cell volume and press Enter/Return."}));
    EXPECT_EQ(undoText(), "Undo Create Substrate");
}

TEST_F(GlueRoadTest, EscapeLeavesAtEveryStepWithoutAWord)
{
    m_driver.trigger("actionGlue_Substrate");
    m_driver.press(Qt::Key_Escape);
    EXPECT_TRUE(idle());
    m_driver.trigger("actionGlue_Substrate");
    m_driver.click(left());
    m_driver.press(Qt::Key_Return);
    m_driver.press(Qt::Key_Escape);
    EXPECT_TRUE(idle());
    EXPECT_EQ(lastLines(1),
              QStringList("Glue Volumes: select the top cell volume and press Enter/Return."));
    m_driver.press(Qt::Key_Return);
    expectSources();
}

TEST_F(GlueRoadTest, TheSameWaferTwiceIsNotGlued)
{
    glue(left(), left(), DialogAnswer().accept());
    EXPECT_TRUE(idle());
    expectSources();
    EXPECT_EQ(lastLines(1), QStringList("Glue Volumes: top cell volume selected."));
    EXPECT_EQ(undoText(), "Undo Create Substrate");
}

TEST_F(GlueRoadTest, UndoDoneTwiceBringsBothWafersBackOnceAndLeavesItsEntry)
{
    glue(left(), right(), DialogAnswer().accept());
    for (int round = 0; round < 2; ++round) {
        m_driver.trigger("actionUndo");
        expectSources();
        EXPECT_TRUE(shown(left()));
        EXPECT_TRUE(shown(right()));
        EXPECT_EQ(undoText(), "Undo Glue Volumes");
        EXPECT_TRUE(m_driver.action("actionUndo").isEnabled());
        EXPECT_FALSE(m_driver.action("actionRedo").isEnabled());
    }
}

TEST_F(GlueRoadTest, AHeightThatNoMemoryHoldsIsToldAndChangesNothing)
{
    glue(left(), right(), DialogAnswer().type("sbxSizeZ", "999999999").accept());
    EXPECT_TRUE(idle());
    expectSources();
    EXPECT_EQ(lastLines(1),
              QStringList("Glue Volumes: the final volume does not fit into memory."));
}

} // namespace
