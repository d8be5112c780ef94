#include "UI/Operations/IsotropicDepositionDialog.h"
#include "UI/Operations/IsotropicEtchingDialog.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QDoubleSpinBox>
#include <QPushButton>

#include <gtest/gtest.h>

namespace {

using Model::Process::Process;
using Ui::Operations::IsotropicDepositionDialog;
using Ui::Operations::IsotropicEtchingDialog;

template <typename Dialog>
class IsotropicDialogsTest : public testing::Test
{
protected:
    const Process m_process{"Some process", 77, {9, 5, 4242, 3}};
    Dialog m_dialog{m_process};
};

using Dialogs = testing::Types<IsotropicDepositionDialog, IsotropicEtchingDialog>;
TYPED_TEST_SUITE(IsotropicDialogsTest, Dialogs);

TYPED_TEST(IsotropicDialogsTest, TheFieldHoldsTwoDecimalsFromZeroToABillionUnitsAndStartsAtTen)
{
    const auto *box = this->m_dialog.template findChild<QDoubleSpinBox *>("dblThickness");
    EXPECT_EQ(box->minimum(), 0.0);
    EXPECT_EQ(box->maximum(), 1e9);
    EXPECT_EQ(box->decimals(), 2);
    EXPECT_EQ(box->text(), "10.00 units");
    EXPECT_EQ(this->m_dialog.thickness(), 10.0);
}

TYPED_TEST(IsotropicDialogsTest, TheChooserOffersTheKnownMaterialsOfTheProcessInItsOrder)
{
    auto *chooser = this->m_dialog.template findChild<QComboBox *>("cbxMaterial");
    ASSERT_EQ(chooser->count(), 3);
    EXPECT_EQ(chooser->itemText(0), "Au (bulk)");
    EXPECT_EQ(chooser->itemText(1), "Cu (bulk)");
    EXPECT_EQ(chooser->itemText(2), "Thermal Si02");
    EXPECT_EQ(this->m_dialog.material(), 9u);
    chooser->setCurrentIndex(2);
    EXPECT_EQ(this->m_dialog.material(), 3u);
}

TYPED_TEST(IsotropicDialogsTest, OkAcceptsAndCancelRejects)
{
    auto *buttons = this->m_dialog.template findChild<QDialogButtonBox *>();
    this->m_dialog.show();
    buttons->button(QDialogButtonBox::Ok)->click();
    EXPECT_EQ(this->m_dialog.result(), QDialog::Accepted);
    this->m_dialog.show();
    buttons->button(QDialogButtonBox::Cancel)->click();
    EXPECT_EQ(this->m_dialog.result(), QDialog::Rejected);
}

} // namespace
