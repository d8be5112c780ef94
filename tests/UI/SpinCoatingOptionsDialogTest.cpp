#include "UI/Operations/SpinCoatingOptionsDialog.h"

#include "UI/OptionsDialogs.h"

#include <QSpinBox>

#include <limits>

namespace {

class SpinCoatingOptionsDialogTest : public testing::Test
{
protected:
    template <typename Widget>
    Widget *find(const char *name)
    {
        return OptionsDialogs::find<Widget>(m_dialog, name);
    }
    void expectRange(int maximum)
    {
        EXPECT_EQ(find<QSpinBox>("sbxHeight")->minimum(), 0);
        EXPECT_EQ(find<QSpinBox>("sbxHeight")->maximum(), maximum);
    }

    Ui::Operations::SpinCoatingOptionsDialog m_dialog;
};

TEST_F(SpinCoatingOptionsDialogTest, TitleAndLabelsAreThoseOfPouring)
{
    EXPECT_EQ(m_dialog.windowTitle(), "Pour Material Options");
    EXPECT_EQ(OptionsDialogs::labelsOf(m_dialog),
              (QStringList{"Material: cbxMaterial", "Deposition Height: sbxHeight"}));
}

TEST_F(SpinCoatingOptionsDialogTest, TheHeightStartsAtZeroAndEndsAtTheLimit)
{
    m_dialog.setMaximumHeight(80);
    expectRange(80);
    auto *box = find<QSpinBox>("sbxHeight");
    EXPECT_EQ(box->text(), "0 cells");
    EXPECT_EQ(m_dialog.height(), 0u);
    OptionsDialogs::open(m_dialog);
    OptionsDialogs::typeInto(*box, "80");
    EXPECT_EQ(m_dialog.height(), 80u);
    // One digit more does not fit.
    OptionsDialogs::typeInto(*box, "81");
    EXPECT_EQ(m_dialog.height(), 8u);
}

TEST_F(SpinCoatingOptionsDialogTest, AVolumeOfNoHeightHasTheRangeZeroToZero)
{
    m_dialog.setMaximumHeight(0);
    expectRange(0);
    EXPECT_EQ(m_dialog.height(), 0u);
}

TEST_F(SpinCoatingOptionsDialogTest, ALimitThatNoSpinBoxHoldsIsTakenAsItsHighest)
{
    constexpr int Most = std::numeric_limits<int>::max();
    m_dialog.setMaximumHeight(2147483647u);
    expectRange(Most);
    m_dialog.setMaximumHeight(2147483648u);
    expectRange(Most);
    m_dialog.setMaximumHeight(4294967295u);
    expectRange(Most);
}

TEST_F(SpinCoatingOptionsDialogTest, TheChooserOffersTheMaterialsThatAreSet)
{
    EXPECT_EQ(m_dialog.material(), 0u);
    m_dialog.setMaterials(OptionsDialogs::twoMaterials());
    auto *chooser = find<QComboBox>("cbxMaterial");
    EXPECT_EQ(OptionsDialogs::itemsOf(*chooser), (QStringList{"Copper", "Oxide"}));
    chooser->setCurrentIndex(1);
    EXPECT_EQ(m_dialog.material(), 4000000000u);
}

TEST_F(SpinCoatingOptionsDialogTest, TabGoesFromTopToBottom)
{
    EXPECT_EQ(OptionsDialogs::tabOrder(m_dialog), (QStringList{"cbxMaterial", "sbxHeight"}));
}

TEST_F(SpinCoatingOptionsDialogTest, OkAcceptsAndCancelRejects)
{
    OptionsDialogs::expectWaysToLeave(m_dialog, "sbxHeight");
}

} // namespace
