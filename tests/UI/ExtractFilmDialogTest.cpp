#include "UI/Operations/ExtractFilmDialog.h"

#include "UI/OptionsDialogs.h"

#include <QCheckBox>
#include <QColor>
#include <QIcon>

namespace {

class ExtractFilmDialogTest : public testing::Test
{
protected:
    QComboBox *chooser() { return OptionsDialogs::find<QComboBox>(m_dialog, "cbxFilm"); }
    QCheckBox *invert() { return OptionsDialogs::find<QCheckBox>(m_dialog, "chkInvertFilm"); }

    Ui::Operations::ExtractFilmDialog m_dialog;
};

TEST_F(ExtractFilmDialogTest, TitleAndLabelsAreThoseOfExtracting)
{
    EXPECT_EQ(m_dialog.windowTitle(), "Extract Film");
    EXPECT_EQ(OptionsDialogs::labelsOf(m_dialog), QStringList("Select Film to Extract: cbxFilm"));
    EXPECT_EQ(invert()->text(), "Invert film after extraction");
}

TEST_F(ExtractFilmDialogTest, TheChooserOffersTheMaterialsThatAreSet)
{
    EXPECT_EQ(m_dialog.film(), 0u);
    m_dialog.setMaterials(OptionsDialogs::twoMaterials());
    EXPECT_EQ(OptionsDialogs::itemsOf(*chooser()), (QStringList{"Copper", "Oxide"}));
    EXPECT_EQ(m_dialog.film(), 5u);
    EXPECT_EQ(chooser()->itemData(0).toUInt(), 5u);
    EXPECT_EQ(chooser()->itemIcon(0).pixmap(16).toImage().pixelColor(8, 8), QColor(255, 0, 0));
    chooser()->setCurrentIndex(1);
    EXPECT_EQ(m_dialog.film(), 4000000000u);
}

TEST_F(ExtractFilmDialogTest, TheFilmIsInvertedIfTheUserSaysSo)
{
    EXPECT_FALSE(m_dialog.invertsFilm());
    OptionsDialogs::open(m_dialog);
    QTest::mouseClick(invert(), Qt::LeftButton, Qt::NoModifier, QPoint(8, 8));
    EXPECT_TRUE(m_dialog.invertsFilm());
}

TEST_F(ExtractFilmDialogTest, TabGoesFromTopToBottom)
{
    EXPECT_EQ(OptionsDialogs::tabOrder(m_dialog), (QStringList{"cbxFilm", "chkInvertFilm"}));
}

TEST_F(ExtractFilmDialogTest, EverythingHasTheRoomThatItAsksFor)
{
    OptionsDialogs::open(m_dialog);
    OptionsDialogs::expectRoom(m_dialog);
}

TEST_F(ExtractFilmDialogTest, OkAcceptsAndCancelRejects)
{
    OptionsDialogs::expectWaysToLeave(m_dialog, "chkInvertFilm");
}

} // namespace
