#include "UI/Operations/PlanarizationOptionsDialog.h"

#include "UI/OptionsDialogs.h"

#include <QSpinBox>

#include <limits>

namespace {

class PlanarizationOptionsDialogTest : public testing::Test
{
protected:
    QSpinBox *minimum() { return OptionsDialogs::find<QSpinBox>(m_dialog, "sbxMinimumHeight"); }
    QSpinBox *maximum() { return OptionsDialogs::find<QSpinBox>(m_dialog, "sbxMaximumHeight"); }
    void expectHeights(std::uint32_t low, std::uint32_t high)
    {
        EXPECT_EQ(m_dialog.minimumHeight(), low);
        EXPECT_EQ(m_dialog.maximumHeight(), high);
    }

    Ui::Operations::PlanarizationOptionsDialog m_dialog{80};
};

TEST_F(PlanarizationOptionsDialogTest, AllOfTheVolumeIsKeptAtTheStart)
{
    EXPECT_EQ(m_dialog.windowTitle(), "Planarization Options");
    EXPECT_EQ(
        OptionsDialogs::labelsOf(m_dialog),
        (QStringList{"Minimum Height: sbxMinimumHeight", "Maximum Height: sbxMaximumHeight"}));
    EXPECT_EQ(minimum()->text(), "0 cells");
    EXPECT_EQ(minimum()->minimum(), 0);
    EXPECT_EQ(minimum()->maximum(), 80);
    EXPECT_EQ(maximum()->text(), "80 cells");
    EXPECT_EQ(maximum()->minimum(), 0);
    EXPECT_EQ(maximum()->maximum(), 80);
    expectHeights(0, 80);
}

TEST_F(PlanarizationOptionsDialogTest, LabelsAndFieldsSayWhatIsRemoved)
{
    const QString below = "All cells below this height will be removed.";
    const QString above = "All cells above this height will be removed.";
    EXPECT_EQ(minimum()->whatsThis(), below);
    EXPECT_EQ(maximum()->whatsThis(), above);
    EXPECT_EQ(OptionsDialogs::find<QLabel>(m_dialog, "lblMinimumHeight")->whatsThis(), below);
    EXPECT_EQ(OptionsDialogs::find<QLabel>(m_dialog, "lblMaximumHeight")->whatsThis(), above);
}

TEST_F(PlanarizationOptionsDialogTest, TheMaximumHeightLimitsTheMinimumHeight)
{
    minimum()->setValue(60);
    maximum()->setValue(30);
    EXPECT_EQ(minimum()->maximum(), 30);
    expectHeights(30, 30);
    // It opens again, and the value stays where it was pushed.
    maximum()->setValue(70);
    EXPECT_EQ(minimum()->maximum(), 70);
    expectHeights(30, 70);
    m_dialog.updateMinimumLimits(12);
    EXPECT_EQ(minimum()->maximum(), 12);
    expectHeights(12, 70);
}

TEST_F(PlanarizationOptionsDialogTest, ANumberThatIsBeingTypedLimitsNothingYet)
{
    OptionsDialogs::open(m_dialog);
    minimum()->setValue(25);
    // On its way to 70 it passes 7.
    OptionsDialogs::typeInto(*maximum(), "70");
    QTest::keyClick(maximum(), Qt::Key_Tab);
    expectHeights(25, 70);
    EXPECT_EQ(minimum()->maximum(), 70);
}

TEST_F(PlanarizationOptionsDialogTest, TypedHeightsCountAlsoWhenAShortcutLeavesTheDialog)
{
    OptionsDialogs::open(m_dialog);
    minimum()->setValue(60);
    OptionsDialogs::typeInto(*maximum(), "30");
    m_dialog.accept();
    expectHeights(30, 30);
}

TEST_F(PlanarizationOptionsDialogTest, AVolumeOfNoHeightHasTheRangeZeroToZero)
{
    const Ui::Operations::PlanarizationOptionsDialog dialog(0);
    EXPECT_EQ(OptionsDialogs::find<QSpinBox>(dialog, "sbxMinimumHeight")->maximum(), 0);
    EXPECT_EQ(OptionsDialogs::find<QSpinBox>(dialog, "sbxMaximumHeight")->maximum(), 0);
    EXPECT_EQ(dialog.minimumHeight(), 0u);
    EXPECT_EQ(dialog.maximumHeight(), 0u);
}

TEST_F(PlanarizationOptionsDialogTest, AHeightThatNoSpinBoxHoldsIsTakenAsItsHighest)
{
    for (const std::uint32_t height : {2147483647u, 2147483648u, 4294967295u}) {
        const Ui::Operations::PlanarizationOptionsDialog dialog(height);
        EXPECT_EQ(dialog.minimumHeight(), 0u);
        EXPECT_EQ(dialog.maximumHeight(), 2147483647u) << height;
    }
}

TEST_F(PlanarizationOptionsDialogTest, TabGoesFromTopToBottom)
{
    EXPECT_EQ(OptionsDialogs::tabOrder(m_dialog),
              (QStringList{"sbxMinimumHeight", "sbxMaximumHeight"}));
}

TEST_F(PlanarizationOptionsDialogTest, OkAcceptsAndCancelRejects)
{
    OptionsDialogs::expectWaysToLeave(m_dialog, "sbxMaximumHeight");
}

} // namespace
