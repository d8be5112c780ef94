#include "Support/TableCells.h"

#include <QApplication>
#include <QColorDialog>
#include <QDialogButtonBox>
#include <QLineEdit>
#include <QPushButton>
#include <QTableView>
#include <QTest>

#include <stdexcept>

namespace Support {

namespace {

void doubleClick(QTableView &table, int row, int column)
{
    const QModelIndex cell = table.model()->index(row, column);
    table.scrollTo(cell);
    const QPoint at = table.visualRect(cell).center();
    QTest::mouseClick(table.viewport(), Qt::LeftButton, Qt::NoModifier, at);
    QTest::mouseDClick(table.viewport(), Qt::LeftButton, Qt::NoModifier, at);
}

void deleteEditors()
{
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

} // namespace

void typeIntoCell(QTableView &table, int row, int column, const QString &text)
{
    doubleClick(table, row, column);
    auto *editor = table.viewport()->findChild<QLineEdit *>();
    if (!editor)
        throw std::runtime_error("no editor");
    QTest::keyClicks(editor, text);
    QTest::keyClick(editor, Qt::Key_Return);
    deleteEditors();
}

void pickCellColor(QWidget &dialog, QTableView &table, int row, int column, const QColor &color)
{
    doubleClick(table, row, column);
    auto *editor = dialog.findChild<QColorDialog *>();
    if (!editor || !QTest::qWaitForWindowExposed(editor))
        throw std::runtime_error("no colour editor");
    editor->setCurrentColor(color);
    QTest::mouseClick(editor->findChild<QDialogButtonBox *>()->button(QDialogButtonBox::Ok),
                      Qt::LeftButton);
    deleteEditors();
    QApplication::setActiveWindow(&dialog);
}

} // namespace Support
