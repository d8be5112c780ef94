#include "UI/Operations/MooreOptionsDialog.h"

#include "UI/OptionsDialogs.h"

#include <QSpinBox>

namespace {

class MooreOptionsDialogTest : public testing::Test
{
protected:
    template <typename Widget>
    Widget *find(const char *name)
    {
        return OptionsDialogs::find<Widget>(m_dialog, name);
    }

    Ui::Operations::MooreOptionsDialog m_dialog;
};

TEST_F(MooreOptionsDialogTest, TheValueHasAGeneralLabelUntilOneIsSet)
{
    EXPECT_EQ(m_dialog.windowTitle(), "Operation Options");
    EXPECT_EQ(OptionsDialogs::labelsOf(m_dialog),
              (QStringList{"Select Film: cbxMaterial", "Select Value: sbxValue"}));
    m_dialog.setValueLabel("Etch Depth");
    EXPECT_EQ(OptionsDialogs::labelsOf(m_dialog),
              (QStringList{"Select Film: cbxMaterial", "Etch Depth: sbxValue"}));
}

TEST_F(MooreOptionsDialogTest, TheStepsStartAtOneCell)
{
    const auto *box = find<QSpinBox>("sbxValue");
    EXPECT_EQ(box->minimum(), 1);
    EXPECT_EQ(box->maximum(), 999999999);
    EXPECT_EQ(box->text(), "1 cells");
    EXPECT_EQ(m_dialog.steps(), 1);
}

TEST_F(MooreOptionsDialogTest, TypedStepsAreReadAtOnceAndZeroIsRefused)
{
    OptionsDialogs::open(m_dialog);
    auto *box = find<QSpinBox>("sbxValue");
    OptionsDialogs::typeInto(*box, "999999999");
    EXPECT_EQ(m_dialog.steps(), 999999999);
    OptionsDialogs::typeInto(*box, "0");
    QTest::keyClick(box, Qt::Key_Tab);
    EXPECT_NE(m_dialog.steps(), 0);
}

TEST_F(MooreOptionsDialogTest, TheChooserOffersTheMaterialsThatAreSet)
{
    EXPECT_EQ(m_dialog.material(), 0u);
    m_dialog.setMaterials(OptionsDialogs::twoMaterials());
    auto *chooser = find<QComboBox>("cbxMaterial");
    EXPECT_EQ(OptionsDialogs::itemsOf(*chooser), (QStringList{"Copper", "Oxide"}));
    EXPECT_EQ(m_dialog.material(), 5u);
    chooser->setCurrentIndex(1);
    EXPECT_EQ(m_dialog.material(), 4000000000u);
}

TEST_F(MooreOptionsDialogTest, TabGoesFromTopToBottom)
{
    EXPECT_EQ(OptionsDialogs::tabOrder(m_dialog), (QStringList{"cbxMaterial", "sbxValue"}));
}

TEST_F(MooreOptionsDialogTest, OkAcceptsAndCancelRejects)
{
    OptionsDialogs::expectWaysToLeave(m_dialog, "sbxValue");
}

} // namespace
