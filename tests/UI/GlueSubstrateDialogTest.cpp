#include "UI/Operations/GlueSubstrateDialog.h"

#include "UI/OptionsDialogs.h"

#include <QCheckBox>
#include <QGroupBox>
#include <QSpinBox>

#include <limits>

namespace {

using Ui::Operations::GlueSubstrateDialog;

constexpr int Largest = 999999999;

class GlueSubstrateDialogTest : public testing::Test
{
protected:
    QSpinBox *box(const char *name) { return OptionsDialogs::find<QSpinBox>(m_dialog, name); }
    static void expectRange(const QDialog &dialog, const char *name, int minimum, int maximum)
    {
        const auto *box = OptionsDialogs::find<QSpinBox>(dialog, name);
        EXPECT_EQ(box->minimum(), minimum) << name;
        EXPECT_EQ(box->maximum(), maximum) << name;
        EXPECT_EQ(box->value(), minimum) << name;
    }

    GlueSubstrateDialog m_dialog{100, 90, 60, 20, 7};
};

TEST_F(GlueSubstrateDialogTest, TitleGroupsAndLabelsAreThoseOfGluing)
{
    EXPECT_EQ(m_dialog.windowTitle(), "Glue Substrate");
    QStringList groups;
    for (const QGroupBox *group : m_dialog.findChildren<QGroupBox *>())
        groups << group->title();
    EXPECT_EQ(groups, (QStringList{"Final Volume Size", "Top Substrate Displacement"}));
    EXPECT_EQ(OptionsDialogs::labelsOf(m_dialog),
              (QStringList{"X: sbxSizeX", "Y: sbxSizeY", "Z: sbxSizeZ", "X: sbxDisplacementX",
                           "Y: sbxDisplacementY"}));
    EXPECT_EQ(OptionsDialogs::find<QCheckBox>(m_dialog, "chkInvertTopSubstrate")->text(),
              "Invert Top Substrate");
}

TEST_F(GlueSubstrateDialogTest, SizesStartAtTheSmallestAndDisplacementsAtZero)
{
    expectRange(m_dialog, "sbxSizeZ", 60, Largest);
    expectRange(m_dialog, "sbxDisplacementX", 0, 20);
    expectRange(m_dialog, "sbxDisplacementY", 0, 7);
    EXPECT_EQ(box("sbxSizeX")->minimum(), 100);
    EXPECT_EQ(box("sbxSizeY")->minimum(), 90);
    EXPECT_EQ(m_dialog.finalX(), 100u);
    EXPECT_EQ(m_dialog.finalY(), 90u);
    EXPECT_EQ(m_dialog.finalZ(), 60u);
    EXPECT_EQ(m_dialog.displacementX(), 0u);
    EXPECT_EQ(m_dialog.displacementY(), 0u);
    EXPECT_FALSE(m_dialog.invertsTop());
}

TEST_F(GlueSubstrateDialogTest, WidthAndLengthAreShownAndStayAsTheyAre)
{
    for (const char *name : {"sbxSizeX", "sbxSizeY"})
        EXPECT_FALSE(box(name)->isEnabled()) << name;
    for (const char *name : {"sbxSizeZ", "sbxDisplacementX", "sbxDisplacementY"})
        EXPECT_TRUE(box(name)->isEnabled()) << name;
    EXPECT_EQ(box("sbxSizeX")->text(), "100 cells");
    EXPECT_EQ(box("sbxSizeY")->text(), "90 cells");
}

TEST_F(GlueSubstrateDialogTest, AHeightBelowTheSmallestCannotBeEntered)
{
    OptionsDialogs::open(m_dialog);
    OptionsDialogs::typeInto(*box("sbxSizeZ"), "59");
    box("sbxSizeZ")->interpretText();
    EXPECT_EQ(m_dialog.finalZ(), 60u);
    OptionsDialogs::typeInto(*box("sbxSizeZ"), "61");
    EXPECT_EQ(m_dialog.finalZ(), 61u);
    OptionsDialogs::typeInto(*box("sbxSizeZ"), "999999999");
    EXPECT_EQ(m_dialog.finalZ(), 999999999u);
}

TEST_F(GlueSubstrateDialogTest, DisplacementsAndTheFlipAreWhatWasEntered)
{
    OptionsDialogs::open(m_dialog);
    OptionsDialogs::typeInto(*box("sbxDisplacementX"), "20");
    OptionsDialogs::typeInto(*box("sbxDisplacementY"), "7");
    QTest::mouseClick(OptionsDialogs::find<QCheckBox>(m_dialog, "chkInvertTopSubstrate"),
                      Qt::LeftButton, Qt::NoModifier, QPoint(8, 8));
    EXPECT_EQ(m_dialog.displacementX(), 20u);
    EXPECT_EQ(m_dialog.displacementY(), 7u);
    EXPECT_TRUE(m_dialog.invertsTop());
    // One digit more does not fit.
    OptionsDialogs::typeInto(*box("sbxDisplacementX"), "21");
    EXPECT_EQ(m_dialog.displacementX(), 2u);
}

TEST_F(GlueSubstrateDialogTest, HeightHasItsTipAndItsExplanation)
{
    EXPECT_EQ(box("sbxSizeZ")->toolTip(), "This determines the final volume size.");
    EXPECT_EQ(box("sbxSizeZ")->whatsThis(),
              "If you wish to continue etching/depositing films on top of the result, you should "
              "increase the Z size accordingly.");
}

TEST_F(GlueSubstrateDialogTest, DisplacementIsExplainedOnItsGroupAndItsFields)
{
    const QString text = "Allows you to move the top substrate around if it is smaller than the "
                         "bottom substrate.";
    for (const char *name : {"grpDisplacement", "sbxDisplacementX", "sbxDisplacementY"}) {
        EXPECT_EQ(OptionsDialogs::find<QWidget>(m_dialog, name)->toolTip(), text) << name;
        EXPECT_EQ(OptionsDialogs::find<QWidget>(m_dialog, name)->whatsThis(), text) << name;
    }
}

TEST_F(GlueSubstrateDialogTest, FlipIsExplainedByTwoHands)
{
    const auto *flip = OptionsDialogs::find<QCheckBox>(m_dialog, "chkInvertTopSubstrate");
    EXPECT_EQ(flip->toolTip(), "Flips the top substrate around the Y axis.");
    EXPECT_EQ(flip->whatsThis(),
              "Flips the top substrate around the Y axis. This is the same as what would happen if "
              " you hold the base substrate on your left hand and the top substrate on your right "
              "hand and then placing your right hand palm down on your left.");
}

TEST_F(GlueSubstrateDialogTest, LimitsThatNoFieldHoldsAreTakenAsItsHighest)
{
    const GlueSubstrateDialog dialog(4294967295u, 1000000000, 4294967295u, 4294967295u, 0);
    expectRange(dialog, "sbxSizeX", Largest, Largest);
    expectRange(dialog, "sbxSizeY", Largest, Largest);
    expectRange(dialog, "sbxSizeZ", Largest, Largest);
    expectRange(dialog, "sbxDisplacementX", 0, std::numeric_limits<int>::max());
    expectRange(dialog, "sbxDisplacementY", 0, 0);
}

TEST_F(GlueSubstrateDialogTest, TabGoesFromTopToBottom)
{
    EXPECT_EQ(
        OptionsDialogs::tabOrder(m_dialog),
        (QStringList{"sbxSizeZ", "sbxDisplacementX", "sbxDisplacementY", "chkInvertTopSubstrate"}));
}

TEST_F(GlueSubstrateDialogTest, EverythingHasTheRoomThatItAsksFor)
{
    OptionsDialogs::open(m_dialog);
    OptionsDialogs::expectRoom(m_dialog);
}

TEST_F(GlueSubstrateDialogTest, OkAcceptsAndCancelRejects)
{
    OptionsDialogs::expectWaysToLeave(m_dialog, "sbxSizeZ");
}

} // namespace
