#include "UI/Operations/DopingOptionsDialog.h"

#include "UI/OptionsDialogs.h"

#include <QDoubleSpinBox>

namespace {

using Model::Process::Process;
using Ui::Operations::DopingOptionsDialog;

class DopingOptionsDialogTest : public testing::Test
{
protected:
    template <typename Widget>
    Widget *find(const char *name)
    {
        return OptionsDialogs::find<Widget>(m_dialog, name);
    }

    const Process m_process{"Renamed", 13, {15, 1, 4242, 14}};
    DopingOptionsDialog m_dialog{m_process};
};

TEST_F(DopingOptionsDialogTest, TheTitleIsThatOfTheFormWhateverTheProcessIsCalled)
{
    EXPECT_EQ(m_dialog.windowTitle(), "Doping Options");
    EXPECT_EQ(m_dialog.objectName(), "DopingOptionsBaseDialog");
}

TEST_F(DopingOptionsDialogTest, LabelsLeadToTheirFields)
{
    EXPECT_EQ(OptionsDialogs::labelsOf(m_dialog),
              (QStringList{"Doped Material: cbxMaterial", "Doping Depth: dblDepth"}));
}

TEST_F(DopingOptionsDialogTest, TheDepthStartsAtTenUnitsAndHasFourDecimals)
{
    const auto *box = find<QDoubleSpinBox>("dblDepth");
    EXPECT_EQ(box->minimum(), 0.0);
    EXPECT_EQ(box->maximum(), 1e9);
    EXPECT_EQ(box->decimals(), 4);
    EXPECT_EQ(box->singleStep(), 1.0);
    EXPECT_EQ(box->text(), "10.0000 units");
    EXPECT_EQ(m_dialog.depth(), 10.0);
}

TEST_F(DopingOptionsDialogTest, HelpTellsTheDopedMaterialFromTheMaterialsThatAreDoped)
{
    OptionsDialogs::expectHelp(
        m_dialog, {"lblMaterial", "cbxMaterial"},
        "This is the doped material. Not to be confused with the materials that will be doped. All "
        "materials in the list will be doped, plus Si.");
}

TEST_F(DopingOptionsDialogTest, TheChooserOffersTheKnownMaterialsOfTheProcessInItsOrder)
{
    auto *chooser = find<QComboBox>("cbxMaterial");
    EXPECT_EQ(OptionsDialogs::itemsOf(*chooser),
              (QStringList{"P-doped Si (100)", "Si", "N-doped Si (100)"}));
    EXPECT_EQ(m_dialog.material(), 15u);
    chooser->setCurrentIndex(2);
    EXPECT_EQ(m_dialog.material(), 14u);
}

TEST_F(DopingOptionsDialogTest, AProcessWithoutMaterialsGivesMaterialZero)
{
    const Process empty("Simple Doping", 13, {});
    const DopingOptionsDialog dialog(empty);
    EXPECT_EQ(OptionsDialogs::find<QComboBox>(dialog, "cbxMaterial")->count(), 0);
    EXPECT_EQ(dialog.material(), 0u);
}

TEST_F(DopingOptionsDialogTest, WhatIsTypedIsRead)
{
    OptionsDialogs::open(m_dialog);
    OptionsDialogs::typeInto(*find<QDoubleSpinBox>("dblDepth"), "0.1234");
    EXPECT_EQ(m_dialog.depth(), 0.1234);
}

TEST_F(DopingOptionsDialogTest, TabGoesFromTopToBottom)
{
    EXPECT_EQ(OptionsDialogs::tabOrder(m_dialog), (QStringList{"cbxMaterial", "dblDepth"}));
}

TEST_F(DopingOptionsDialogTest, OkAcceptsAndCancelRejects)
{
    OptionsDialogs::expectWaysToLeave(m_dialog, "dblDepth");
}

} // namespace
