#include "UI/Operations/BCAEtchingDialog.h"

#include "UI/OptionsDialogs.h"

#include <QDoubleSpinBox>
#include <QTest>

namespace {

class BCAEtchingDialogTest : public testing::Test
{
protected:
    QDoubleSpinBox *field() { return OptionsDialogs::find<QDoubleSpinBox>(m_dialog, "dblDepth"); }

    Ui::Operations::BCAEtchingDialog m_dialog;
};

TEST_F(BCAEtchingDialogTest, TitleAndTextsAreThoseOfTheForm)
{
    EXPECT_EQ(m_dialog.windowTitle(), "Wet Etching Options");
    EXPECT_EQ(m_dialog.objectName(), "BCAEtchingBaseDialog");
    EXPECT_EQ(OptionsDialogs::labelsOf(m_dialog), QStringList("Etch Depth: dblDepth"));
    EXPECT_EQ(OptionsDialogs::find<QDialogButtonBox>(m_dialog, "buttonBox")->standardButtons(),
              QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
}

TEST_F(BCAEtchingDialogTest, TheDepthStartsAtTenUnitsAndHasFourDecimals)
{
    EXPECT_EQ(field()->minimum(), 0.0);
    EXPECT_EQ(field()->maximum(), 1e9);
    EXPECT_EQ(field()->decimals(), 4);
    EXPECT_EQ(field()->suffix(), " units");
    EXPECT_EQ(field()->text(), "10.0000 units");
    EXPECT_EQ(m_dialog.depth(), 10.0);
}

TEST_F(BCAEtchingDialogTest, ArrowsChangeItByTheSingleStep)
{
    EXPECT_EQ(field()->singleStep(), 0.353552);
    OptionsDialogs::open(m_dialog);
    field()->setFocus();
    QTest::keyClick(field(), Qt::Key_Up);
    EXPECT_EQ(field()->text(), "10.3536 units");
    EXPECT_NEAR(m_dialog.depth(), 10.3536, 1e-4);
    QTest::keyClick(field(), Qt::Key_Down);
    QTest::keyClick(field(), Qt::Key_Down);
    EXPECT_EQ(field()->text(), "9.6464 units");
}

TEST_F(BCAEtchingDialogTest, HelpTellsWhatTheDepthIs)
{
    OptionsDialogs::expectHelp(m_dialog, {"dblDepth"},
                               "Set the depth of the etching. This is how far down the (100) plane "
                               "on the surface will be etched.");
}

TEST_F(BCAEtchingDialogTest, WhatIsTypedIsRead)
{
    OptionsDialogs::open(m_dialog);
    OptionsDialogs::typeInto(*field(), "0.3536");
    EXPECT_EQ(m_dialog.depth(), 0.3536);
    OptionsDialogs::typeInto(*field(), "0");
    EXPECT_EQ(m_dialog.depth(), 0.0);
    OptionsDialogs::typeInto(*field(), "1000000000");
    EXPECT_EQ(m_dialog.depth(), 1e9);
}

TEST_F(BCAEtchingDialogTest, ThereIsNoDepthBelowZero)
{
    OptionsDialogs::open(m_dialog);
    OptionsDialogs::typeInto(*field(), "-3");
    EXPECT_GE(m_dialog.depth(), 0.0);
    field()->setValue(0.1);
    QTest::keyClick(field(), Qt::Key_Down);
    EXPECT_EQ(m_dialog.depth(), 0.0);
}

TEST_F(BCAEtchingDialogTest, EverythingHasItsRoom)
{
    OptionsDialogs::open(m_dialog);
    OptionsDialogs::expectRoom(m_dialog);
    EXPECT_EQ(OptionsDialogs::tabOrder(m_dialog), QStringList("dblDepth"));
}

TEST_F(BCAEtchingDialogTest, OkAcceptsAndCancelRejects)
{
    OptionsDialogs::expectWaysToLeave(m_dialog, "dblDepth");
}

} // namespace
