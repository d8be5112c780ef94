#pragma once

#include "Model/Materials/Material.h"

#include <QAbstractSpinBox>
#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QDialogButtonBox>
#include <QLabel>
#include <QPushButton>
#include <QString>
#include <QStringList>
#include <QTest>

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

/// What the tests of the process dialogs share.
namespace OptionsDialogs {

template <typename Widget>
Widget *find(const QDialog &dialog, const char *name)
{
    auto *widget = dialog.findChild<Widget *>(QLatin1String(name));
    if (!widget)
        throw std::runtime_error(std::string("no widget ") + name);
    return widget;
}

/// Two materials; the second has an id that no signed number holds.
inline std::vector<Model::Materials::Material> twoMaterials()
{
    const float red[] = {1.0f, 0.0f, 0.0f, 1.0f};
    const float blue[] = {0.0f, 0.0f, 0.5f, 1.0f};
    return {Model::Materials::Material(5, "Copper", 8960, 128e9f, 0.36f, red),
            Model::Materials::Material(4000000000u, "Oxide", 2200, 70e9f, 0.17f, blue)};
}

inline QStringList itemsOf(const QComboBox &chooser)
{
    QStringList items;
    for (int i = 0; i < chooser.count(); ++i)
        items << chooser.itemText(i);
    return items;
}

/// The texts of the labels, and the names of the widgets that they lead to.
inline QStringList labelsOf(const QDialog &dialog)
{
    QStringList texts;
    for (const QLabel *label : dialog.findChildren<QLabel *>())
        texts << label->text() + ": " + (label->buddy() ? label->buddy()->objectName() : "nothing");
    return texts;
}

inline void open(QDialog &dialog)
{
    dialog.show();
    EXPECT_TRUE(QTest::qWaitForWindowExposed(&dialog));
    QApplication::setActiveWindow(&dialog);
    QTest::qWait(0);
}

/// Types over what stands in the field, which keeps the focus.
inline void typeInto(QAbstractSpinBox &field, const char *text)
{
    field.setFocus();
    field.selectAll();
    QTest::keyClicks(&field, QLatin1String(text));
}

/// The names of the widgets that Tab goes through, from the first one that has the focus to the
/// last one before the buttons.
inline QStringList tabOrder(QDialog &dialog)
{
    open(dialog);
    QStringList names;
    while (names.size() < 20) {
        QWidget *focused = dialog.focusWidget();
        if (!focused || qobject_cast<QPushButton *>(focused))
            break;
        names << focused->objectName();
        QTest::keyClick(focused, Qt::Key_Tab);
    }
    return names;
}

/// Those widgets, and no others, have the text as tool tip, status tip and what's-this.
inline void expectHelp(const QDialog &dialog, const QStringList &names, const QString &text)
{
    QStringList tips;
    QStringList statusTips;
    QStringList explanations;
    for (const QWidget *widget : dialog.findChildren<QWidget *>()) {
        if (widget->toolTip() == text)
            tips << widget->objectName();
        if (widget->statusTip() == text)
            statusTips << widget->objectName();
        if (widget->whatsThis() == text)
            explanations << widget->objectName();
    }
    EXPECT_EQ(tips, names);
    EXPECT_EQ(statusTips, names);
    EXPECT_EQ(explanations, names);
}

/// Everything that is seen has the room that it asks for.
inline void expectRoom(const QDialog &dialog)
{
    for (const QWidget *widget : dialog.findChildren<QWidget *>()) {
        if (!widget->isVisible() || !widget->parentWidget()->layout())
            continue;
        EXPECT_GE(widget->width(), widget->minimumSizeHint().width())
            << widget->objectName().toStdString();
        EXPECT_GE(widget->height(), widget->minimumSizeHint().height())
            << widget->objectName().toStdString();
    }
}

inline QPushButton *button(const QDialog &dialog, QDialogButtonBox::StandardButton which)
{
    return find<QDialogButtonBox>(dialog, "buttonBox")->button(which);
}

/// Modal, Ok is the default and accepts, Return in the field does too, Cancel and Escape reject.
inline void expectWaysToLeave(QDialog &dialog, const char *field)
{
    EXPECT_TRUE(dialog.isModal());
    open(dialog);
    EXPECT_TRUE(button(dialog, QDialogButtonBox::Ok)->isDefault());
    QTest::mouseClick(button(dialog, QDialogButtonBox::Ok), Qt::LeftButton);
    EXPECT_FALSE(dialog.isVisible());
    EXPECT_EQ(dialog.result(), QDialog::Accepted);
    open(dialog);
    QTest::mouseClick(button(dialog, QDialogButtonBox::Cancel), Qt::LeftButton);
    EXPECT_FALSE(dialog.isVisible());
    EXPECT_EQ(dialog.result(), QDialog::Rejected);
    open(dialog);
    auto *box = find<QWidget>(dialog, field);
    box->setFocus();
    QTest::keyClick(box, Qt::Key_Return);
    EXPECT_FALSE(dialog.isVisible());
    EXPECT_EQ(dialog.result(), QDialog::Accepted);
    open(dialog);
    QTest::keyClick(&dialog, Qt::Key_Escape);
    EXPECT_FALSE(dialog.isVisible());
    EXPECT_EQ(dialog.result(), QDialog::Rejected);
}

} // namespace OptionsDialogs
