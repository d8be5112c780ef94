#include "UI/Operations/ElectrodepositionDialog.h"

#include "UI/OptionsDialogs.h"

#include <QDoubleSpinBox>

namespace {

class ElectrodepositionDialogTest : public testing::Test
{
protected:
    template <typename Widget>
    Widget *find(const char *name)
    {
        return OptionsDialogs::find<Widget>(m_dialog, name);
    }

    Ui::Operations::ElectrodepositionDialog m_dialog;
};

TEST_F(ElectrodepositionDialogTest, TitleAndLabelsAreThoseOfElectroplating)
{
    EXPECT_EQ(m_dialog.windowTitle(), "Electroplating Options");
    EXPECT_EQ(OptionsDialogs::labelsOf(m_dialog),
              (QStringList{"Material: cbxMaterial", "Conducting Material: cbxConductingMaterial",
                           "Film thickness: dblThickness"}));
}

TEST_F(ElectrodepositionDialogTest, TheThicknessStartsAtTenUnits)
{
    const auto *box = find<QDoubleSpinBox>("dblThickness");
    EXPECT_EQ(box->minimum(), 0.0);
    EXPECT_EQ(box->maximum(), 1e9);
    EXPECT_EQ(box->decimals(), 2);
    EXPECT_EQ(box->text(), "10.00 units");
    EXPECT_EQ(m_dialog.thickness(), 10.0);
}

TEST_F(ElectrodepositionDialogTest, BothChoosersOfferAllMaterialsAndAreReadApart)
{
    m_dialog.setMaterials(OptionsDialogs::twoMaterials());
    for (const char *name : {"cbxMaterial", "cbxConductingMaterial"})
        EXPECT_EQ(OptionsDialogs::itemsOf(*find<QComboBox>(name)),
                  (QStringList{"Copper", "Oxide"}));
    EXPECT_EQ(m_dialog.material(), 5u);
    EXPECT_EQ(m_dialog.conductingMaterial(), 5u);
    find<QComboBox>("cbxConductingMaterial")->setCurrentIndex(1);
    EXPECT_EQ(m_dialog.material(), 5u);
    EXPECT_EQ(m_dialog.conductingMaterial(), 4000000000u);
}

TEST_F(ElectrodepositionDialogTest, WithoutMaterialsBothAreZero)
{
    EXPECT_EQ(m_dialog.material(), 0u);
    EXPECT_EQ(m_dialog.conductingMaterial(), 0u);
}

TEST_F(ElectrodepositionDialogTest, TabGoesFromTopToBottom)
{
    EXPECT_EQ(OptionsDialogs::tabOrder(m_dialog),
              (QStringList{"cbxMaterial", "cbxConductingMaterial", "dblThickness"}));
}

TEST_F(ElectrodepositionDialogTest, OkAcceptsAndCancelRejects)
{
    OptionsDialogs::expectWaysToLeave(m_dialog, "dblThickness");
}

} // namespace
