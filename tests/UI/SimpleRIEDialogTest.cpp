#include "UI/Operations/SimpleRIEDialog.h"

#include "UI/OptionsDialogs.h"

#include <QCheckBox>
#include <QSpinBox>

namespace {

class SimpleRIEDialogTest : public testing::Test
{
protected:
    template <typename Widget>
    Widget *find(const char *name)
    {
        return OptionsDialogs::find<Widget>(m_dialog, name);
    }
    void toggle(const char *name)
    {
        auto *box = find<QCheckBox>(name);
        QTest::mouseClick(box, Qt::LeftButton, Qt::NoModifier, QPoint(8, box->height() / 2));
    }

    Ui::Operations::SimpleRIEDialog m_dialog;
};

TEST_F(SimpleRIEDialogTest, TitleAndLabelsAreThoseOfTheProcess)
{
    EXPECT_EQ(m_dialog.windowTitle(), "Simple RIE Options");
    EXPECT_EQ(OptionsDialogs::labelsOf(m_dialog),
              (QStringList{"Select Material: cbxMaterial", "Etch Depth: sbxDepth"}));
}

TEST_F(SimpleRIEDialogTest, TheSizeIsFixed)
{
    OptionsDialogs::open(m_dialog);
    EXPECT_EQ(m_dialog.size(), QSize(400, 280));
    EXPECT_EQ(m_dialog.minimumSize(), QSize(400, 280));
    EXPECT_EQ(m_dialog.maximumSize(), QSize(400, 280));
    OptionsDialogs::expectRoom(m_dialog);
}

TEST_F(SimpleRIEDialogTest, TheDepthStartsAtOne)
{
    const auto *box = find<QSpinBox>("sbxDepth");
    EXPECT_EQ(box->minimum(), 1);
    EXPECT_EQ(box->maximum(), 999999999);
    EXPECT_EQ(box->text(), "1 units");
    EXPECT_EQ(m_dialog.depth(), 1);
}

TEST_F(SimpleRIEDialogTest, TheDirectionsAreCheckedApartAndTopIsSet)
{
    EXPECT_EQ(find<QCheckBox>("cbxFromTop")->text(), "Etch from top");
    EXPECT_EQ(find<QCheckBox>("cbxFromBelow")->text(), "Etch from below");
    OptionsDialogs::open(m_dialog);
    EXPECT_TRUE(m_dialog.etchFromTop());
    EXPECT_FALSE(m_dialog.etchFromBelow());
    toggle("cbxFromBelow");
    EXPECT_TRUE(m_dialog.etchFromTop());
    EXPECT_TRUE(m_dialog.etchFromBelow());
    toggle("cbxFromTop");
    EXPECT_FALSE(m_dialog.etchFromTop());
    EXPECT_TRUE(m_dialog.etchFromBelow());
    toggle("cbxFromBelow");
    EXPECT_FALSE(m_dialog.etchFromTop());
    EXPECT_FALSE(m_dialog.etchFromBelow());
}

TEST_F(SimpleRIEDialogTest, TheChooserOffersTheMaterialsThatAreSet)
{
    EXPECT_EQ(m_dialog.material(), 0u);
    m_dialog.setMaterials(OptionsDialogs::twoMaterials());
    auto *chooser = find<QComboBox>("cbxMaterial");
    EXPECT_EQ(OptionsDialogs::itemsOf(*chooser), (QStringList{"Copper", "Oxide"}));
    EXPECT_EQ(m_dialog.material(), 5u);
    chooser->setCurrentIndex(1);
    EXPECT_EQ(m_dialog.material(), 4000000000u);
}

TEST_F(SimpleRIEDialogTest, TabGoesFromTopToBottom)
{
    EXPECT_EQ(OptionsDialogs::tabOrder(m_dialog),
              (QStringList{"cbxMaterial", "sbxDepth", "cbxFromTop", "cbxFromBelow"}));
}

TEST_F(SimpleRIEDialogTest, OkAcceptsAndCancelRejects)
{
    OptionsDialogs::expectWaysToLeave(m_dialog, "sbxDepth");
}

} // namespace
