#include "UI/Operations/IonImplantationOptionsDialog.h"

#include "UI/OptionsDialogs.h"

#include <QDoubleSpinBox>

namespace {

using Model::Process::Process;
using Ui::Operations::IonImplantationOptionsDialog;

class IonImplantationOptionsDialogTest : public testing::Test
{
protected:
    template <typename Widget>
    Widget *find(const char *name)
    {
        return OptionsDialogs::find<Widget>(m_dialog, name);
    }

    const Process m_process{"Renamed", 14, {15, 1, 4242, 14}};
    IonImplantationOptionsDialog m_dialog{m_process};
};

TEST_F(IonImplantationOptionsDialogTest, TheTitleIsThatOfTheFormWhateverTheProcessIsCalled)
{
    EXPECT_EQ(m_dialog.windowTitle(), "Ion Implantation Options");
    EXPECT_EQ(m_dialog.objectName(), "IonImplantationOptionsBaseDialog");
}

TEST_F(IonImplantationOptionsDialogTest, LabelsLeadToTheirFields)
{
    EXPECT_EQ(
        OptionsDialogs::labelsOf(m_dialog),
        (QStringList{"Doped Material: cbxMaterial", "Implantation Depth: dblImplantationDepth",
                     "Annealing Distance: dblAnnealingDistance"}));
}

TEST_F(IonImplantationOptionsDialogTest, BothLengthsStartAtTenUnits)
{
    for (const char *name : {"dblImplantationDepth", "dblAnnealingDistance"}) {
        const auto *box = find<QDoubleSpinBox>(name);
        EXPECT_EQ(box->minimum(), 0.0);
        EXPECT_EQ(box->maximum(), 1e9);
        EXPECT_EQ(box->decimals(), 2);
        EXPECT_EQ(box->singleStep(), 1.0);
        EXPECT_EQ(box->text(), "10.00 units");
    }
    EXPECT_EQ(m_dialog.implantationDepth(), 10.0);
    EXPECT_EQ(m_dialog.annealingDistance(), 10.0);
}

TEST_F(IonImplantationOptionsDialogTest, HelpTellsTheDopedMaterialFromTheMaterialsThatAreDoped)
{
    OptionsDialogs::expectHelp(
        m_dialog, {"lblMaterial", "cbxMaterial"},
        "This is the doped material. Not to be confused with the materials that will be doped. All "
        "materials in the list will be doped, plus Si.");
}

TEST_F(IonImplantationOptionsDialogTest, TheChooserOffersTheKnownMaterialsOfTheProcessInItsOrder)
{
    auto *chooser = find<QComboBox>("cbxMaterial");
    EXPECT_EQ(OptionsDialogs::itemsOf(*chooser),
              (QStringList{"P-doped Si (100)", "Si", "N-doped Si (100)"}));
    EXPECT_EQ(m_dialog.material(), 15u);
    chooser->setCurrentIndex(1);
    EXPECT_EQ(m_dialog.material(), 1u);
}

TEST_F(IonImplantationOptionsDialogTest, AProcessWithoutMaterialsGivesMaterialZero)
{
    const Process empty("Ion Implantation", 14, {});
    const IonImplantationOptionsDialog dialog(empty);
    EXPECT_EQ(OptionsDialogs::find<QComboBox>(dialog, "cbxMaterial")->count(), 0);
    EXPECT_EQ(dialog.material(), 0u);
}

TEST_F(IonImplantationOptionsDialogTest, WhatIsTypedIsRead)
{
    OptionsDialogs::open(m_dialog);
    OptionsDialogs::typeInto(*find<QDoubleSpinBox>("dblImplantationDepth"), "7.25");
    OptionsDialogs::typeInto(*find<QDoubleSpinBox>("dblAnnealingDistance"), "3.5");
    EXPECT_EQ(m_dialog.implantationDepth(), 7.25);
    EXPECT_EQ(m_dialog.annealingDistance(), 3.5);
}

TEST_F(IonImplantationOptionsDialogTest, TabGoesFromTopToBottom)
{
    EXPECT_EQ(OptionsDialogs::tabOrder(m_dialog),
              (QStringList{"cbxMaterial", "dblImplantationDepth", "dblAnnealingDistance"}));
}

TEST_F(IonImplantationOptionsDialogTest, OkAcceptsAndCancelRejects)
{
    OptionsDialogs::expectWaysToLeave(m_dialog, "dblAnnealingDistance");
}

} // namespace
