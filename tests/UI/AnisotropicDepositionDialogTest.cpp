#include "UI/Operations/AnisotropicDepositionDialog.h"

#include "UI/OptionsDialogs.h"

#include <QDoubleSpinBox>
#include <QRadioButton>

namespace {

using Model::Process::Process;
using Ui::Operations::AnisotropicDepositionDialog;

class AnisotropicDepositionDialogTest : public testing::Test
{
protected:
    template <typename Widget>
    Widget *find(const char *name)
    {
        return OptionsDialogs::find<Widget>(m_dialog, name);
    }

    const Process m_process{"Renamed", 4, {9, 5, 4242, 3}};
    AnisotropicDepositionDialog m_dialog{m_process};
};

TEST_F(AnisotropicDepositionDialogTest, TheTitleIsMadeFromTheNameOfTheProcess)
{
    EXPECT_EQ(m_dialog.windowTitle(), "Renamed Options");
}

TEST_F(AnisotropicDepositionDialogTest, LabelsLeadToTheirFields)
{
    EXPECT_EQ(OptionsDialogs::labelsOf(m_dialog),
              (QStringList{"Material: cbxMaterial", "Film thickness: dblThickness",
                           "Horizontal ratio: dblHorizontalRatio"}));
}

TEST_F(AnisotropicDepositionDialogTest, TheThicknessStartsAtTenUnits)
{
    const auto *box = find<QDoubleSpinBox>("dblThickness");
    EXPECT_EQ(box->minimum(), 0.0);
    EXPECT_EQ(box->maximum(), 1e9);
    EXPECT_EQ(box->decimals(), 2);
    EXPECT_EQ(box->text(), "10.00 units");
    EXPECT_EQ(m_dialog.thickness(), 10.0);
}

TEST_F(AnisotropicDepositionDialogTest, TheRatioStartsAtOneHalfAndItsArrowsDoNotMoveIt)
{
    auto *box = find<QDoubleSpinBox>("dblHorizontalRatio");
    EXPECT_EQ(box->minimum(), 0.01);
    EXPECT_EQ(box->maximum(), 1e9);
    EXPECT_EQ(box->decimals(), 2);
    EXPECT_EQ(box->singleStep(), 0.0);
    EXPECT_EQ(box->text(), "0.50");
    EXPECT_EQ(m_dialog.horizontalRatio(), 0.5);
    box->stepUp();
    EXPECT_EQ(m_dialog.horizontalRatio(), 0.5);
}

TEST_F(AnisotropicDepositionDialogTest, TheChooserOffersTheKnownMaterialsOfTheProcessInItsOrder)
{
    auto *chooser = find<QComboBox>("cbxMaterial");
    EXPECT_EQ(OptionsDialogs::itemsOf(*chooser),
              (QStringList{"Au (bulk)", "Cu (bulk)", "Thermal Si02"}));
    EXPECT_EQ(m_dialog.material(), 9u);
    chooser->setCurrentIndex(2);
    EXPECT_EQ(m_dialog.material(), 3u);
}

TEST_F(AnisotropicDepositionDialogTest, AProcessWithoutMaterialsGivesMaterialZero)
{
    const Process empty("PVD", 4, {});
    const AnisotropicDepositionDialog dialog(empty);
    EXPECT_EQ(OptionsDialogs::find<QComboBox>(dialog, "cbxMaterial")->count(), 0);
    EXPECT_EQ(dialog.material(), 0u);
}

TEST_F(AnisotropicDepositionDialogTest, TheButtonsChooseOneOfThreeModesAndTheFirstIsSet)
{
    const char *const names[] = {"rbtTop", "rbtBottom", "rbtBothSides"};
    const char *const texts[] = {"Deposit on top", "Deposit on bottom", "Deposit on both sides"};
    EXPECT_EQ(m_dialog.depositionMode(), 1u);
    OptionsDialogs::open(m_dialog);
    for (const int wanted : {1, 2, 0}) {
        auto *button = find<QRadioButton>(names[wanted]);
        EXPECT_EQ(button->text(), texts[wanted]);
        QTest::mouseClick(button, Qt::LeftButton, Qt::NoModifier, QPoint(8, button->height() / 2));
        EXPECT_EQ(m_dialog.depositionMode(), unsigned(wanted) + 1);
        for (const int other : {0, 1, 2})
            EXPECT_EQ(find<QRadioButton>(names[other])->isChecked(), other == wanted);
    }
}

TEST_F(AnisotropicDepositionDialogTest, TabGoesFromTopToBottom)
{
    EXPECT_EQ(OptionsDialogs::tabOrder(m_dialog),
              (QStringList{"cbxMaterial", "dblThickness", "dblHorizontalRatio", "rbtTop"}));
}

TEST_F(AnisotropicDepositionDialogTest, OkAcceptsAndCancelRejects)
{
    OptionsDialogs::expectWaysToLeave(m_dialog, "dblThickness");
}

TEST_F(AnisotropicDepositionDialogTest, WhatIsTypedIsRead)
{
    OptionsDialogs::open(m_dialog);
    OptionsDialogs::typeInto(*find<QDoubleSpinBox>("dblThickness"), "7.25");
    OptionsDialogs::typeInto(*find<QDoubleSpinBox>("dblHorizontalRatio"), "3.5");
    EXPECT_EQ(m_dialog.thickness(), 7.25);
    EXPECT_EQ(m_dialog.horizontalRatio(), 3.5);
}

} // namespace
