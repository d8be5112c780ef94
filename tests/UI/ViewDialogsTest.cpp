#include "UI/AboutWindow.h"
#include "UI/Input/ChangeGridSpacingDialog.h"
#include "UI/SetViewAngleDialog.h"
#include "UI/SetZoomDialog.h"
#include "UI/TranslateDialog.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QDoubleSpinBox>
#include <QLabel>
#include <QPushButton>
#include <QTest>

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

using Ui::AboutWindow;
using Ui::SetViewAngleDialog;
using Ui::SetZoomDialog;
using Ui::TranslateDialog;
using Ui::Input::ChangeGridSpacingDialog;

namespace {

QDoubleSpinBox *spinBox(const QDialog &dialog, const char *name)
{
    auto *box = dialog.findChild<QDoubleSpinBox *>(QLatin1String(name));
    if (box == nullptr)
        throw std::runtime_error(std::string("no spin box ") + name);
    return box;
}

QPushButton *button(const QDialog &dialog, QDialogButtonBox::StandardButton which)
{
    auto *box = dialog.findChild<QDialogButtonBox *>(QStringLiteral("buttonBox"));
    return box != nullptr ? box->button(which) : nullptr;
}

void open(QDialog &dialog)
{
    dialog.show();
    EXPECT_TRUE(QTest::qWaitForWindowExposed(&dialog));
    QApplication::setActiveWindow(&dialog);
}

/// Replaces the box's text as a user does who types it and goes on with Tab.
void type(QDoubleSpinBox *box, const char *text)
{
    box->setFocus();
    box->selectAll();
    QTest::keyClicks(box, QLatin1String(text));
    QTest::keyClick(box, Qt::Key_Tab);
}

void clickOk(QDialog &dialog)
{
    QTest::mouseClick(button(dialog, QDialogButtonBox::Ok), Qt::LeftButton);
}

void clickCancel(QDialog &dialog)
{
    QTest::mouseClick(button(dialog, QDialogButtonBox::Cancel), Qt::LeftButton);
}

struct Field
{
    const char *name;
    const char *label;
};

/// What all the small dialogs have in common.
void expectForm(QDialog &dialog, const char *title, const std::vector<Field> &fields,
                double minimum, double maximum, int decimals)
{
    EXPECT_EQ(dialog.windowTitle().toStdString(), title);
    EXPECT_TRUE(dialog.isModal());
    ASSERT_EQ(dialog.findChildren<QDoubleSpinBox *>().size(), int(fields.size()));

    std::vector<std::string> labels;
    for (const QLabel *label : dialog.findChildren<QLabel *>()) {
        labels.push_back(label->text().toStdString());
        EXPECT_NE(label->buddy(), nullptr) << labels.back();
    }
    ASSERT_EQ(labels.size(), fields.size());
    for (std::size_t i = 0; i < fields.size(); ++i) {
        SCOPED_TRACE(fields[i].name);
        const QDoubleSpinBox *box = spinBox(dialog, fields[i].name);
        EXPECT_EQ(labels[i], fields[i].label);
        EXPECT_DOUBLE_EQ(box->minimum(), minimum);
        EXPECT_DOUBLE_EQ(box->maximum(), maximum);
        EXPECT_EQ(box->decimals(), decimals);
        EXPECT_DOUBLE_EQ(box->singleStep(), 1.0);
    }

    open(dialog);
    // The first field can be typed over at once, Tab walks down the fields and ends on the buttons.
    EXPECT_EQ(dialog.focusWidget(), spinBox(dialog, fields.front().name));
    for (std::size_t i = 1; i < fields.size(); ++i) {
        QTest::keyClick(dialog.focusWidget(), Qt::Key_Tab);
        EXPECT_EQ(dialog.focusWidget(), spinBox(dialog, fields[i].name));
    }
    QTest::keyClick(dialog.focusWidget(), Qt::Key_Tab);
    EXPECT_NE(qobject_cast<QPushButton *>(dialog.focusWidget()), nullptr);

    ASSERT_NE(button(dialog, QDialogButtonBox::Ok), nullptr);
    ASSERT_NE(button(dialog, QDialogButtonBox::Cancel), nullptr);
    EXPECT_TRUE(button(dialog, QDialogButtonBox::Ok)->isDefault());

    const QSize hint = dialog.sizeHint();
    dialog.resize(1, 1);
    EXPECT_GE(dialog.width(), hint.width());
    EXPECT_GE(dialog.height(), hint.height());
    dialog.hide();
}

class ViewDialogsTest : public ::testing::Test
{
protected:
    /// The angles outlive the dialogs; the next test expects those of a fresh start.
    void TearDown() override
    {
        SetViewAngleDialog dialog;
        for (const char *name : {"dblAngleX", "dblAngleY", "dblAngleZ"})
            spinBox(dialog, name)->setValue(0.0);
        dialog.accept();
    }
};

} // namespace

TEST_F(ViewDialogsTest, TranslateAsksForThreeDistances)
{
    TranslateDialog dialog(0, 0, 0);
    expectForm(dialog, "Translate View",
               {{"dblDistanceX", "Distance X"},
                {"dblDistanceY", "Distance Y"},
                {"dblDistanceZ", "Distance Z"}},
               -1e9, 1e9, 3);
}

TEST_F(ViewDialogsTest, TranslateOpensWithTheGivenDistancesAndReturnsTheTypedOnes)
{
    TranslateDialog dialog(1.25, -20.5, 300.0);
    EXPECT_DOUBLE_EQ(dialog.distanceX(), 1.25);
    EXPECT_DOUBLE_EQ(dialog.distanceY(), -20.5);
    EXPECT_DOUBLE_EQ(dialog.distanceZ(), 300.0);

    open(dialog);
    type(spinBox(dialog, "dblDistanceX"), "-7.125");
    type(spinBox(dialog, "dblDistanceY"), "8");
    type(spinBox(dialog, "dblDistanceZ"), "0.001");
    clickOk(dialog);
    EXPECT_EQ(dialog.result(), QDialog::Accepted);
    EXPECT_DOUBLE_EQ(dialog.distanceX(), -7.125);
    EXPECT_DOUBLE_EQ(dialog.distanceY(), 8.0);
    EXPECT_DOUBLE_EQ(dialog.distanceZ(), 0.001);
}

TEST_F(ViewDialogsTest, ZoomAsksForAPercentage)
{
    SetZoomDialog dialog(100.0);
    EXPECT_DOUBLE_EQ(spinBox(dialog, "dblZoom")->value(), 100.0);
    expectForm(dialog, "Set Zoom", {{"dblZoom", "Zoom"}}, 0.1, 100000, 2);
}

TEST_F(ViewDialogsTest, ZoomOpensWithTheGivenPercentageAndReturnsTheTypedOne)
{
    SetZoomDialog dialog(45.45);
    EXPECT_DOUBLE_EQ(dialog.percentage(), 45.45);
    open(dialog);
    type(spinBox(dialog, "dblZoom"), "250.5");
    clickOk(dialog);
    EXPECT_EQ(dialog.result(), QDialog::Accepted);
    EXPECT_DOUBLE_EQ(dialog.percentage(), 250.5);
}

TEST_F(ViewDialogsTest, ZoomNeverFallsToZero)
{
    EXPECT_DOUBLE_EQ(SetZoomDialog(0.0).percentage(), 0.1);
    EXPECT_DOUBLE_EQ(SetZoomDialog(1e7).percentage(), 100000.0);
}

TEST_F(ViewDialogsTest, ViewAngleAsksForThreeAngles)
{
    SetViewAngleDialog dialog;
    expectForm(dialog, "Set Viewing Angle",
               {{"dblAngleX", "Angle X Axis"},
                {"dblAngleY", "Angle Y Axis"},
                {"dblAngleZ", "Angle Z Axis"}},
               -360, 360, 2);
}

TEST_F(ViewDialogsTest, ViewAngleOpensWithTheAnglesAcceptedLast)
{
    {
        SetViewAngleDialog dialog;
        EXPECT_DOUBLE_EQ(dialog.angleX(), 0.0);
        EXPECT_DOUBLE_EQ(dialog.angleY(), 0.0);
        EXPECT_DOUBLE_EQ(dialog.angleZ(), 0.0);
        open(dialog);
        type(spinBox(dialog, "dblAngleX"), "-90");
        type(spinBox(dialog, "dblAngleY"), "12.5");
        type(spinBox(dialog, "dblAngleZ"), "180");
        clickOk(dialog);
        EXPECT_EQ(dialog.result(), QDialog::Accepted);
        EXPECT_DOUBLE_EQ(dialog.angleX(), -90.0);
        EXPECT_DOUBLE_EQ(dialog.angleY(), 12.5);
        EXPECT_DOUBLE_EQ(dialog.angleZ(), 180.0);
    }
    SetViewAngleDialog next;
    EXPECT_DOUBLE_EQ(next.angleX(), -90.0);
    EXPECT_DOUBLE_EQ(next.angleY(), 12.5);
    EXPECT_DOUBLE_EQ(next.angleZ(), 180.0);
}

TEST_F(ViewDialogsTest, ViewAngleForgetsCanceledAngles)
{
    {
        SetViewAngleDialog dialog;
        open(dialog);
        type(spinBox(dialog, "dblAngleX"), "30");
        type(spinBox(dialog, "dblAngleY"), "40");
        type(spinBox(dialog, "dblAngleZ"), "50");
        clickCancel(dialog);
        EXPECT_EQ(dialog.result(), QDialog::Rejected);
        EXPECT_FALSE(dialog.isVisible());
    }
    SetViewAngleDialog next;
    EXPECT_DOUBLE_EQ(next.angleX(), 0.0);
    EXPECT_DOUBLE_EQ(next.angleY(), 0.0);
    EXPECT_DOUBLE_EQ(next.angleZ(), 0.0);
}

TEST_F(ViewDialogsTest, GridSpacingAsksForADistance)
{
    ChangeGridSpacingDialog dialog(10.0);
    expectForm(dialog, "Set Grid Spacing", {{"dblSpacing", "Spacing"}}, 0, 1e9, 4);
}

TEST_F(ViewDialogsTest, GridSpacingOpensWithTheGivenSpacingAndReturnsTheTypedOne)
{
    ChangeGridSpacingDialog dialog(10.0);
    EXPECT_DOUBLE_EQ(dialog.spacing(), 10.0);
    open(dialog);
    type(spinBox(dialog, "dblSpacing"), "0.0625");
    clickOk(dialog);
    EXPECT_EQ(dialog.result(), QDialog::Accepted);
    EXPECT_DOUBLE_EQ(dialog.spacing(), 0.0625);
}

TEST_F(ViewDialogsTest, CancelAndEscapeReject)
{
    TranslateDialog translate(1, 2, 3);
    SetZoomDialog zoom(100);
    ChangeGridSpacingDialog grid(10);
    for (QDialog *dialog : {static_cast<QDialog *>(&translate), static_cast<QDialog *>(&zoom),
                            static_cast<QDialog *>(&grid)}) {
        SCOPED_TRACE(dialog->windowTitle().toStdString());
        open(*dialog);
        dialog->setResult(QDialog::Accepted);
        clickCancel(*dialog);
        EXPECT_EQ(dialog->result(), QDialog::Rejected);
        EXPECT_FALSE(dialog->isVisible());

        open(*dialog);
        dialog->setResult(QDialog::Accepted);
        QTest::keyClick(dialog, Qt::Key_Escape);
        EXPECT_EQ(dialog->result(), QDialog::Rejected);
        EXPECT_FALSE(dialog->isVisible());
    }
}

TEST_F(ViewDialogsTest, EnterInAFieldAcceptsWhatWasTyped)
{
    SetZoomDialog dialog(100);
    open(dialog);
    QDoubleSpinBox *box = spinBox(dialog, "dblZoom");
    // The value stands selected, so typing replaces it.
    QTest::keyClicks(box, QStringLiteral("50"));
    QTest::keyClick(box, Qt::Key_Return);
    EXPECT_EQ(dialog.result(), QDialog::Accepted);
    EXPECT_FALSE(dialog.isVisible());
    EXPECT_DOUBLE_EQ(dialog.percentage(), 50.0);
}

TEST_F(ViewDialogsTest, AboutTellsTheProgramAndItsAuthors)
{
    AboutWindow window;
    EXPECT_EQ(window.windowTitle(), QStringLiteral("About"));
    EXPECT_TRUE(window.isModal());
    const QList<QLabel *> labels = window.findChildren<QLabel *>();
    ASSERT_EQ(labels.size(), 1);
    EXPECT_EQ(labels.front()->textFormat(), Qt::RichText);
    EXPECT_TRUE(labels.front()->text().contains(QStringLiteral("Lithara")));
    EXPECT_TRUE(labels.front()->text().contains(QStringLiteral("authors")));

    open(window);
    clickOk(window);
    EXPECT_FALSE(window.isVisible());
}
