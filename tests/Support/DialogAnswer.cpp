#include "Support/DialogAnswer.h"

#include <QAbstractButton>
#include <QAbstractSpinBox>
#include <QColorDialog>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QLineEdit>
#include <QTest>

#include <stdexcept>

namespace Support {

namespace {

[[noreturn]] void fail(const QString &text)
{
    throw std::runtime_error(text.toStdString());
}

template <typename Widget>
Widget &find(QWidget &dialog, const QString &name)
{
    auto *widget = dialog.findChild<Widget *>(name);
    if (!widget)
        fail(QStringLiteral("no such widget in \"%1\": %2").arg(dialog.windowTitle(), name));
    if (!widget->isEnabled())
        fail(QStringLiteral("disabled in \"%1\": %2").arg(dialog.windowTitle(), name));
    return *widget;
}

void clickButton(QAbstractButton &button)
{
    // On its left edge's middle: a check box reacts where its box and text are.
    QTest::mouseClick(&button, Qt::LeftButton, Qt::NoModifier,
                      QPoint(qMin(8, button.width() / 2), button.height() / 2));
}

void leaveBy(QWidget &dialog, bool accepting)
{
    const QDialogButtonBox::ButtonRole role =
        accepting ? QDialogButtonBox::AcceptRole : QDialogButtonBox::RejectRole;
    for (QDialogButtonBox *box : dialog.findChildren<QDialogButtonBox *>()) {
        for (QAbstractButton *button : box->buttons()) {
            if (box->buttonRole(button) != role)
                continue;
            if (!button->isEnabled())
                fail(QStringLiteral("the button \"%1\" is disabled").arg(button->text()));
            QTest::mouseClick(button, Qt::LeftButton);
            return;
        }
    }
    fail(QStringLiteral("\"%1\" has no such button").arg(dialog.windowTitle()));
}

} // namespace

DialogAnswer &DialogAnswer::add(const std::function<void(QWidget &)> &step)
{
    m_steps.push_back(step);
    return *this;
}

DialogAnswer &DialogAnswer::type(const QString &widget, const QString &text)
{
    return add([widget, text](QWidget &dialog) {
        auto &field = find<QWidget>(dialog, widget);
        auto *line = qobject_cast<QLineEdit *>(&field);
        if (!line && qobject_cast<QAbstractSpinBox *>(&field))
            line = field.findChild<QLineEdit *>();
        if (!line)
            fail(QStringLiteral("nothing to type into: %1").arg(widget));
        field.setFocus();
        line->selectAll();
        QTest::keyClicks(line, text);
        QTest::keyClick(&field, Qt::Key_Tab);
        if (field.hasFocus())
            fail(QStringLiteral("Tab does not leave %1").arg(widget));
    });
}

DialogAnswer &DialogAnswer::choose(const QString &widget, const QString &item)
{
    return add([widget, item](QWidget &dialog) {
        auto &chooser = find<QComboBox>(dialog, widget);
        const int wanted = chooser.findText(item);
        if (wanted < 0)
            fail(QStringLiteral("%1 has no item \"%2\"").arg(widget, item));
        while (chooser.currentIndex() != wanted) {
            const int before = chooser.currentIndex();
            QTest::keyClick(&chooser, before < wanted ? Qt::Key_Down : Qt::Key_Up);
            if (chooser.currentIndex() == before)
                fail(QStringLiteral("%1 does not move to \"%2\"").arg(widget, item));
        }
    });
}

DialogAnswer &DialogAnswer::check(const QString &widget, bool checked)
{
    return add([widget, checked](QWidget &dialog) {
        auto &button = find<QAbstractButton>(dialog, widget);
        if (button.isChecked() != checked)
            clickButton(button);
        if (button.isChecked() != checked)
            fail(QStringLiteral("%1 does not change by a click").arg(widget));
    });
}

DialogAnswer &DialogAnswer::click(const QString &widget)
{
    return add([widget](QWidget &dialog) { clickButton(find<QAbstractButton>(dialog, widget)); });
}

DialogAnswer &DialogAnswer::fileName(const QString &name)
{
    return add([name](QWidget &dialog) {
        auto *files = qobject_cast<QFileDialog *>(&dialog);
        if (!files)
            fail(QStringLiteral("not a file dialog: \"%1\"").arg(dialog.windowTitle()));
        auto &line = find<QLineEdit>(dialog, QStringLiteral("fileNameEdit"));
        line.selectAll();
        QTest::keyClicks(&line, name);
    });
}

DialogAnswer &DialogAnswer::color(const QColor &color)
{
    return add([color](QWidget &dialog) {
        auto *colors = qobject_cast<QColorDialog *>(&dialog);
        if (!colors)
            fail(QStringLiteral("not a colour dialog: \"%1\"").arg(dialog.windowTitle()));
        colors->setCurrentColor(color);
    });
}

DialogAnswer &DialogAnswer::look(const std::function<void(QWidget &)> &step)
{
    return add(step);
}

DialogAnswer &DialogAnswer::accept()
{
    return add([](QWidget &dialog) { leaveBy(dialog, true); });
}

DialogAnswer &DialogAnswer::reject()
{
    return add([](QWidget &dialog) { leaveBy(dialog, false); });
}

void DialogAnswer::playIn(QWidget &dialog) const
{
    for (const auto &step : m_steps)
        step(dialog);
}

} // namespace Support
