#include "UI/ManageMaterialsDialog.h"

#include "Model/Materials/MaterialFactory.h"
#include "UI/ColorItemDelegate.h"
#include "UI/OptionsDialogs.h"

#include <QColorDialog>
#include <QLineEdit>
#include <QTableView>

#include <algorithm>
#include <array>

namespace {

using Model::Materials::Material;
using Model::Materials::MaterialFactory;

class ManageMaterialsDialogTest : public testing::Test
{
protected:
    template <typename Widget>
    Widget *find(const char *name)
    {
        return OptionsDialogs::find<Widget>(m_dialog, name);
    }
    QTableView *table() { return find<QTableView>("tblMaterials"); }
    QModelIndex cell(int row, int column) { return table()->model()->index(row, column); }
    void add() { QTest::mouseClick(find<QPushButton>("btnAddMaterial"), Qt::LeftButton); }
    void doubleClick(int row, int column)
    {
        table()->scrollTo(cell(row, column));
        const QPoint at = table()->visualRect(cell(row, column)).center();
        QTest::mouseClick(table()->viewport(), Qt::LeftButton, Qt::NoModifier, at);
        QTest::mouseDClick(table()->viewport(), Qt::LeftButton, Qt::NoModifier, at);
    }
    /// The editor of a text or a number that a double click brings up.
    QLineEdit *edit(int row, int column)
    {
        doubleClick(row, column);
        return table()->viewport()->findChild<QLineEdit *>();
    }
    static void settle()
    {
        QCoreApplication::processEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    /// Types a value over the cell and commits it with Return.
    void enter(int row, int column, const char *text)
    {
        QLineEdit *editor = edit(row, column);
        ASSERT_TRUE(editor);
        EXPECT_EQ(editor->text(), "");
        QTest::keyClicks(editor, QLatin1String(text));
        QTest::keyClick(editor, Qt::Key_Return);
        settle();
    }

    Ui::ManageMaterialsDialog m_dialog;
};

TEST_F(ManageMaterialsDialogTest, ShowsAllMaterialsOfTheRegistry)
{
    EXPECT_EQ(m_dialog.windowTitle(), "Manage Materials");
    EXPECT_EQ(find<QPushButton>("btnAddMaterial")->text(), "Add Material");
    ASSERT_EQ(table()->model()->rowCount(), 15);
    EXPECT_EQ(table()->model()->columnCount(), 6);
    EXPECT_EQ(cell(1, 1).data(), QVariant("Thermal Si02"));
    EXPECT_EQ(m_dialog.materials().size(), 15U);
}

TEST_F(ManageMaterialsDialogTest, TheColourColumnAloneIsEditedInAColourDialog)
{
    for (int column = 0; column < 6; ++column)
        EXPECT_EQ(dynamic_cast<Ui::ColorItemDelegate *>(table()->itemDelegateForColumn(column)) !=
                      nullptr,
                  column == 2);
}

TEST_F(ManageMaterialsDialogTest, AddMaterialGivesTheNextIdEachTime)
{
    OptionsDialogs::open(m_dialog);
    add();
    ASSERT_EQ(m_dialog.materials().size(), 16U);
    EXPECT_EQ(m_dialog.materials().back().id(), 17U);
    EXPECT_EQ(m_dialog.materials().back().name(), "New Material");
    add();
    EXPECT_EQ(m_dialog.materials().back().id(), 18U);
    EXPECT_EQ(table()->model()->rowCount(), 17);
    EXPECT_TRUE(m_dialog.isVisible());
    // The new row can be seen.
    EXPECT_TRUE(table()->viewport()->rect().intersects(table()->visualRect(cell(16, 1))));
    // The registry knows nothing of them.
    EXPECT_EQ(MaterialFactory::instance()->materials().size(), 15U);
    EXPECT_EQ(MaterialFactory::instance()->material(17).id(), 0U);
}

TEST_F(ManageMaterialsDialogTest, ARowThatIsBeingEditedStaysTheOneWhileAnotherIsAdded)
{
    OptionsDialogs::open(m_dialog);
    table()->setCurrentIndex(cell(3, 1));
    add();
    EXPECT_EQ(table()->currentIndex(), cell(3, 1));
}

TEST_F(ManageMaterialsDialogTest, EditorsOpenEmptyAndTakeTheValueWhole)
{
    OptionsDialogs::open(m_dialog);
    enter(3, 1, "Copper");
    enter(3, 3, "-2.5");
    enter(3, 4, "1e9");
    enter(3, 5, "0.25");
    const Material &copper = m_dialog.materials()[3];
    EXPECT_EQ(copper.name(), "Copper");
    EXPECT_EQ(copper.density(), -2.5F);
    EXPECT_EQ(copper.youngModulus(), 1e9F);
    EXPECT_EQ(copper.poissonRatio(), 0.25F);
    // Return ended the editor, not the dialog.
    EXPECT_TRUE(m_dialog.isVisible());
    EXPECT_EQ(MaterialFactory::instance()->material(5).name(), "Cu (bulk)");
}

TEST_F(ManageMaterialsDialogTest, EmptyEditorsGiveAnEmptyNameAndZero)
{
    OptionsDialogs::open(m_dialog);
    enter(3, 1, "");
    enter(3, 3, "");
    EXPECT_EQ(m_dialog.materials()[3].name(), "");
    EXPECT_EQ(m_dialog.materials()[3].density(), 0.0F);
}

TEST_F(ManageMaterialsDialogTest, EscapeInAnEditorKeepsTheValueAndTheDialog)
{
    OptionsDialogs::open(m_dialog);
    QLineEdit *editor = edit(3, 1);
    ASSERT_TRUE(editor);
    QTest::keyClicks(editor, "Copper");
    QTest::keyClick(editor, Qt::Key_Escape);
    settle();
    EXPECT_EQ(m_dialog.materials()[3].name(), "Cu (bulk)");
    EXPECT_TRUE(m_dialog.isVisible());
}

TEST_F(ManageMaterialsDialogTest, TheIdHasNoEditor)
{
    OptionsDialogs::open(m_dialog);
    EXPECT_FALSE(edit(3, 0));
    EXPECT_EQ(m_dialog.materials()[3].id(), 5U);
}

TEST_F(ManageMaterialsDialogTest, OkTakesWhatStandsInAnOpenEditor)
{
    OptionsDialogs::open(m_dialog);
    QLineEdit *editor = edit(3, 1);
    ASSERT_TRUE(editor);
    QTest::keyClicks(editor, "Copper");
    QTest::mouseClick(OptionsDialogs::button(m_dialog, QDialogButtonBox::Ok), Qt::LeftButton);
    EXPECT_EQ(m_dialog.result(), QDialog::Accepted);
    EXPECT_EQ(m_dialog.materials()[3].name(), "Copper");
}

TEST_F(ManageMaterialsDialogTest, TheColourEditorShowsTheColourWithItsAlphaAndGivesItBack)
{
    OptionsDialogs::open(m_dialog);
    table()->model()->setData(cell(3, 2), QColor(10, 20, 30, 40));
    doubleClick(3, 2);
    auto *editor = m_dialog.findChild<QColorDialog *>();
    ASSERT_TRUE(editor);
    ASSERT_TRUE(QTest::qWaitForWindowExposed(editor));
    EXPECT_EQ(editor->currentColor(), QColor(10, 20, 30, 40));
    editor->setCurrentColor(QColor(51, 102, 255, 128));
    QTest::mouseClick(editor->findChild<QDialogButtonBox *>()->button(QDialogButtonBox::Ok),
                      Qt::LeftButton);
    settle();
    std::array<float, 4> color{};
    std::copy_n(m_dialog.materials()[3].color(), 4, color.begin());
    EXPECT_EQ(color, (std::array<float, 4>{0.2F, 0.4F, 1.0F, 128 / 255.0F}));
    EXPECT_TRUE(m_dialog.isVisible());
}

TEST_F(ManageMaterialsDialogTest, ARejectedColourLeavesTheMaterialBitForBit)
{
    OptionsDialogs::open(m_dialog);
    doubleClick(3, 2);
    auto *editor = m_dialog.findChild<QColorDialog *>();
    ASSERT_TRUE(editor);
    ASSERT_TRUE(QTest::qWaitForWindowExposed(editor));
    editor->setCurrentColor(QColor(51, 102, 255, 128));
    QTest::mouseClick(editor->findChild<QDialogButtonBox *>()->button(QDialogButtonBox::Cancel),
                      Qt::LeftButton);
    settle();
    const float *color = m_dialog.materials()[3].color();
    EXPECT_EQ(color[0], 1.0F);
    EXPECT_EQ(color[1], 0.8F);
    EXPECT_EQ(color[2], 0.3F);
    EXPECT_EQ(color[3], 1.0F);
}

TEST_F(ManageMaterialsDialogTest, OkAcceptsAndCancelRejects)
{
    OptionsDialogs::expectWaysToLeave(m_dialog, "tblMaterials");
}

TEST_F(ManageMaterialsDialogTest, AllColumnsAreInSight)
{
    OptionsDialogs::open(m_dialog);
    for (int column = 0; column < 6; ++column)
        EXPECT_TRUE(
            table()->viewport()->rect().contains(table()->visualRect(cell(0, column)).center()))
            << column;
    OptionsDialogs::expectRoom(m_dialog);
}

} // namespace
