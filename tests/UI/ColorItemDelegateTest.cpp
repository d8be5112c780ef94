#include "UI/ColorItemDelegate.h"

#include <QApplication>
#include <QColorDialog>
#include <QDialogButtonBox>
#include <QHeaderView>
#include <QPushButton>
#include <QStandardItemModel>
#include <QTableView>
#include <QTest>

#include <gtest/gtest.h>

#include <memory>
#include <vector>

namespace {

/// Shows colours under Qt::DisplayRole and remembers what it is given.
class ColorModel final : public QStandardItemModel
{
public:
    ColorModel() : QStandardItemModel(2, 1)
    {
        setDisplayed(QColor(10, 20, 30, 40));
        setItemData(index(1, 0), {{Qt::DisplayRole, QColor(1, 2, 3)}});
        given.clear();
    }

    void setDisplayed(const QVariant &value) { m_displayed = value; }
    QVariant data(const QModelIndex &index, int role) const override
    {
        return role == Qt::DisplayRole && index.row() == 0 ? m_displayed : QVariant();
    }
    bool setItemData(const QModelIndex & /*index*/, const QMap<int, QVariant> &roles) override
    {
        given.push_back(roles);
        return true;
    }
    bool setData(const QModelIndex & /*index*/, const QVariant & /*value*/, int /*role*/) override
    {
        ++singleSets;
        return true;
    }

    std::vector<QMap<int, QVariant>> given;
    int singleSets = 0;

private:
    QVariant m_displayed;
};

class ColorItemDelegateTest : public testing::Test
{
protected:
    QModelIndex index() const { return m_model.index(0, 0); }
    QColorDialog *makeEditor()
    {
        return qobject_cast<QColorDialog *>(
            m_delegate.createEditor(&m_parent, QStyleOptionViewItem(), index()));
    }
    void openView()
    {
        m_view.setModel(&m_model);
        m_view.setItemDelegateForColumn(0, &m_delegate);
        m_view.resize(300, 200);
        m_view.move(200, 150);
        m_view.show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&m_view));
        QApplication::setActiveWindow(&m_view);
    }
    /// The editor that a double click on the cell brings up.
    QColorDialog *editInView()
    {
        const QPoint at = m_view.visualRect(index()).center();
        QTest::mouseClick(m_view.viewport(), Qt::LeftButton, Qt::NoModifier, at);
        QTest::mouseDClick(m_view.viewport(), Qt::LeftButton, Qt::NoModifier, at);
        auto *editor = m_view.findChild<QColorDialog *>();
        if (editor && !QTest::qWaitForWindowExposed(editor))
            return nullptr;
        return editor;
    }
    static void press(QColorDialog &editor, QDialogButtonBox::StandardButton which)
    {
        QTest::mouseClick(editor.findChild<QDialogButtonBox *>()->button(which), Qt::LeftButton);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QCoreApplication::processEvents();
    }

    ColorModel m_model;
    QWidget m_parent;
    Ui::ColorItemDelegate m_delegate;
    QTableView m_view;
};

TEST_F(ColorItemDelegateTest, TheEditorIsAColourDialogWithWhatTheModelShows)
{
    QColorDialog *editor = makeEditor();
    ASSERT_TRUE(editor);
    EXPECT_EQ(editor->parentWidget(), &m_parent);
    EXPECT_EQ(editor->currentColor(), QColor(10, 20, 30, 40));
    EXPECT_TRUE(editor->testOption(QColorDialog::ShowAlphaChannel));
}

TEST_F(ColorItemDelegateTest, AColourThatIsATextIsUnderstood)
{
    m_model.setDisplayed("#80ff0000");
    EXPECT_EQ(makeEditor()->currentColor(), QColor(255, 0, 0, 128));
}

TEST_F(ColorItemDelegateTest, WithoutAColourTheEditorOpensAllTheSame)
{
    for (const QVariant &value : {QVariant(), QVariant("no colour")}) {
        m_model.setDisplayed(value);
        EXPECT_TRUE(makeEditor());
    }
}

TEST_F(ColorItemDelegateTest, TheModelGetsTheColourUnderTheEditRole)
{
    QColorDialog *editor = makeEditor();
    editor->setCurrentColor(QColor(50, 60, 70, 80));
    m_delegate.setModelData(editor, &m_model, index());
    ASSERT_EQ(m_model.given.size(), 1U);
    EXPECT_EQ(m_model.given[0],
              (QMap<int, QVariant>{{Qt::EditRole, QVariant(QColor(50, 60, 70, 80))}}));
    EXPECT_EQ(m_model.singleSets, 0);
}

TEST_F(ColorItemDelegateTest, AnyColourDialogGivesItsColour)
{
    QColorDialog plain;
    plain.setOption(QColorDialog::ShowAlphaChannel);
    plain.setCurrentColor(QColor(50, 60, 70, 80));
    m_delegate.setModelData(&plain, &m_model, index());
    ASSERT_EQ(m_model.given.size(), 1U);
    EXPECT_EQ(m_model.given[0],
              (QMap<int, QVariant>{{Qt::EditRole, QVariant(QColor(50, 60, 70, 80))}}));
}

TEST_F(ColorItemDelegateTest, AnEditorOfAnotherKindGivesNothing)
{
    QWidget other;
    m_delegate.setModelData(&other, &m_model, index());
    m_delegate.setModelData(nullptr, &m_model, index());
    EXPECT_TRUE(m_model.given.empty());
}

TEST_F(ColorItemDelegateTest, OkInTheViewHandsTheColourOn)
{
    openView();
    QColorDialog *editor = editInView();
    ASSERT_TRUE(editor);
    EXPECT_EQ(editor->currentColor(), QColor(10, 20, 30, 40));
    editor->setCurrentColor(QColor(50, 60, 70, 80));
    press(*editor, QDialogButtonBox::Ok);
    ASSERT_EQ(m_model.given.size(), 1U);
    EXPECT_EQ(m_model.given[0][Qt::EditRole].value<QColor>(), QColor(50, 60, 70, 80));
    EXPECT_FALSE(m_view.findChild<QColorDialog *>());
}

TEST_F(ColorItemDelegateTest, CancelInTheViewHandsNothingOn)
{
    openView();
    QColorDialog *editor = editInView();
    ASSERT_TRUE(editor);
    editor->setCurrentColor(QColor(50, 60, 70, 80));
    press(*editor, QDialogButtonBox::Cancel);
    EXPECT_TRUE(m_model.given.empty());
    EXPECT_FALSE(m_view.findChild<QColorDialog *>());
    // The next one starts anew, and is taken.
    editor = editInView();
    ASSERT_TRUE(editor);
    EXPECT_EQ(editor->currentColor(), QColor(10, 20, 30, 40));
    press(*editor, QDialogButtonBox::Ok);
    EXPECT_EQ(m_model.given.size(), 1U);
}

TEST_F(ColorItemDelegateTest, EscapeAndTheCloseButtonHandNothingOn)
{
    openView();
    QColorDialog *editor = editInView();
    ASSERT_TRUE(editor);
    editor->setCurrentColor(QColor(50, 60, 70, 80));
    QTest::keyClick(editor, Qt::Key_Escape);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCoreApplication::processEvents();
    EXPECT_TRUE(m_model.given.empty());
    EXPECT_FALSE(m_view.findChild<QColorDialog *>());
    editor = editInView();
    ASSERT_TRUE(editor);
    editor->setCurrentColor(QColor(50, 60, 70, 80));
    editor->close();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(m_model.given.empty());
}

TEST_F(ColorItemDelegateTest, TheEditorOpensOverItsWindow)
{
    openView();
    const QColorDialog *editor = editInView();
    ASSERT_TRUE(editor);
    EXPECT_TRUE(editor->geometry().intersects(m_view.geometry()));
    const QPoint apart = editor->geometry().center() - m_view.geometry().center();
    EXPECT_LT(apart.manhattanLength(), 200);
}

} // namespace
