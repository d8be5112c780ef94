#include "UI/Input/ChangeColorsDialog.h"

#include "Model/ColorTable.h"
#include "UI/ColorDialogs.h"

#include <QApplication>
#include <QColorDialog>
#include <QDialogButtonBox>
#include <QLabel>
#include <QMetaMethod>
#include <QPushButton>
#include <QTest>
#include <QTimer>

#include <gtest/gtest.h>

#include <array>
#include <functional>
#include <stdexcept>
#include <string>
#include <utility>

using ColorDialogs::ColorDialogDriver;
using Model::ColorTable;
using Ui::Input::ChangeColorsDialog;
using Util::Vector4D;

namespace {

const std::array<Vector4D, 9> firstCustomColors{{{1, 0, 0, 1},
                                                 {1, 1, 1, 1},
                                                 {0.4, 0.4, 0.4, 1},
                                                 {0, 0, 0, 0},
                                                 {0.4, 0.4, 0.4, 1},
                                                 {0.6, 0.6, 0.6, 1},
                                                 {1, 1, 1, 1},
                                                 {0, 0, 0, 1},
                                                 {1, 1, 1, 1}}};

void expectColor(const Vector4D &actual, const Vector4D &expected)
{
    for (unsigned component = 0; component < 4; ++component)
        EXPECT_NEAR(actual[component], expected[component], 1e-12) << "component " << component;
}

void expectCustomRow(unsigned row, const Vector4D &expected)
{
    SCOPED_TRACE(testing::Message() << "row " << row);
    expectColor(ColorTable::colorSetting(row, ColorTable::CustomScheme), expected);
}

class ChangeColorsDialogTest : public ::testing::Test
{
protected:
    void SetUp() override { restoreTable(); }
    void TearDown() override { restoreTable(); }

    static void restoreTable()
    {
        ColorTable::setCurrentScheme(0);
        for (unsigned row = 0; row < firstCustomColors.size(); ++row)
            ColorTable::setCustomColor(row, firstCustomColors[row]);
    }

    static QPushButton *button(const ChangeColorsDialog &dialog, const char *name)
    {
        auto *found = dialog.findChild<QPushButton *>(QLatin1String(name));
        if (found == nullptr)
            throw std::runtime_error(std::string("no button ") + name);
        return found;
    }

    static void click(ChangeColorsDialog &dialog, const char *name)
    {
        QTest::mouseClick(button(dialog, name), Qt::LeftButton);
    }

    static void clickStandard(ChangeColorsDialog &dialog, QDialogButtonBox::StandardButton which)
    {
        auto *box = dialog.findChild<QDialogButtonBox *>(QStringLiteral("buttonBox"));
        QTest::mouseClick(box->button(which), Qt::LeftButton);
    }

    /// Clicks a colour button, and chooses `color` in the dialog that comes up.
    static void choose(ChangeColorsDialog &dialog, const char *name, const QColor &color)
    {
        ColorDialogDriver driver([&](QColorDialog &colors) {
            colors.setCurrentColor(color);
            colors.accept();
        });
        click(dialog, name);
        EXPECT_TRUE(driver.found());
    }

    /// The four buttons' colours as six hexadecimal digits: background, grid, object, outline.
    static void expectShown(const ChangeColorsDialog &dialog, const char *background,
                            const char *grid, const char *object, const char *outline)
    {
        const auto sheet = [](const char *digits) {
            return std::string("border: none;background-color : #") + digits + ";\n";
        };
        EXPECT_EQ(shown(dialog, "btnBackgroundColor"), sheet(background));
        EXPECT_EQ(shown(dialog, "btnGridColor"), sheet(grid));
        EXPECT_EQ(shown(dialog, "btnObjectColor"), sheet(object));
        EXPECT_EQ(shown(dialog, "btnOutlineColor"), sheet(outline));
    }

    static std::string shown(const ChangeColorsDialog &dialog, const char *name)
    {
        return button(dialog, name)->styleSheet().toStdString();
    }
};

} // namespace

TEST_F(ChangeColorsDialogTest, HasALabeledFlatButtonForEachOfFourColors)
{
    ChangeColorsDialog dialog;
    EXPECT_EQ(dialog.windowTitle(), QStringLiteral("Change Default Colors"));
    EXPECT_TRUE(dialog.isModal());

    const std::array<const char *, 4> texts = {
        "Background Color", "Grid Color", "Default Object Color", "Default Object Outline Color"};
    const std::array<const char *, 4> names = {"btnBackgroundColor", "btnGridColor",
                                               "btnObjectColor", "btnOutlineColor"};
    const QList<QLabel *> labels = dialog.findChildren<QLabel *>();
    ASSERT_EQ(labels.size(), 4);
    dialog.show();
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(labels[i]->text().toStdString(), texts[i]);
        QPushButton *colorButton = button(dialog, names[i]);
        EXPECT_TRUE(colorButton->isFlat());
        EXPECT_TRUE(colorButton->text().isEmpty());
        // Side by side in one row.
        EXPECT_LT(labels[i]->geometry().right(), colorButton->geometry().left());
        EXPECT_LE(qAbs(labels[i]->geometry().center().y() - colorButton->geometry().center().y()),
                  1);
        if (i > 0) {
            EXPECT_GT(labels[i]->y(), labels[i - 1]->y());
        }
    }
    EXPECT_EQ(button(dialog, "btnLoadDefaultColors")->text(),
              QStringLiteral("Load Default Colors"));
    EXPECT_EQ(button(dialog, "btnLoadLowColors")->text(), QStringLiteral("Load Low Color Scheme"));

    // Ok stays the default while the focus is on another button.
    auto *box = dialog.findChild<QDialogButtonBox *>(QStringLiteral("buttonBox"));
    QApplication::setActiveWindow(&dialog);
    button(dialog, "btnGridColor")->setFocus();
    EXPECT_TRUE(box->button(QDialogButtonBox::Ok)->isDefault());

    const QSize hint = dialog.sizeHint();
    dialog.resize(1, 1);
    EXPECT_GE(dialog.width(), hint.width());
    EXPECT_GE(dialog.height(), hint.height());
}

TEST_F(ChangeColorsDialogTest, OwnSlotsStandInOrder)
{
    const QMetaObject &meta = ChangeColorsDialog::staticMetaObject;
    const std::array<const char *, 6> slotNames = {"loadDefaultColor()",  "loadLowColor()",
                                                   "changeBgColor()",     "changeGridColor()",
                                                   "changeObjectColor()", "changeOutlineColor()"};
    for (int i = 0; i < 6; ++i)
        EXPECT_EQ(meta.method(meta.methodOffset() + i).methodSignature().toStdString(),
                  slotNames[i]);
}

TEST_F(ChangeColorsDialogTest, OpensWithTheColorsOfTheCurrentScheme)
{
    // 0.4 of 255 is 102.
    expectShown(ChangeColorsDialog(), "000000", "666666", "000000", "ffffff");
    ColorTable::setCurrentScheme(1);
    expectShown(ChangeColorsDialog(), "ffffff", "666666", "ffffff", "000000");
    ColorTable::setCurrentScheme(2);
    expectShown(ChangeColorsDialog(), "000000", "666666", "ff0000", "ffffff");
}

TEST_F(ChangeColorsDialogTest, ComponentsAreTruncatedAndZeroPadded)
{
    ColorTable::setCurrentScheme(2);
    ColorTable::setCustomColor(ColorTable::BackgroundColor, {0.5, 0.999, 0.01, 1});
    // 127.5, 254.745 and 2.55.
    expectShown(ChangeColorsDialog(), "7ffe02", "666666", "ff0000", "ffffff");
}

TEST_F(ChangeColorsDialogTest, LowSchemeAndOkMakeItCurrentAndOverwriteTheCustomScheme)
{
    ChangeColorsDialog dialog;
    dialog.show();
    click(dialog, "btnLoadLowColors");
    expectShown(dialog, "ffffff", "666666", "ffffff", "000000");
    EXPECT_EQ(ColorTable::currentScheme(), 0U);

    clickStandard(dialog, QDialogButtonBox::Ok);
    EXPECT_EQ(dialog.result(), QDialog::Accepted);
    EXPECT_EQ(ColorTable::currentScheme(), 1U);
    expectColor(ColorTable::colorSetting(ColorTable::BackgroundColor, ColorTable::currentScheme()),
                {1, 1, 1, 0});
    expectCustomRow(0, {1, 1, 1, 1});
    expectCustomRow(1, {0, 0, 0, 1});
    expectCustomRow(2, {0.4, 0.4, 0.4, 1});
    expectCustomRow(3, {1, 1, 1, 0});
    for (unsigned row = 4; row < 9; ++row)
        expectCustomRow(row, firstCustomColors[row]);
}

TEST_F(ChangeColorsDialogTest, DefaultSchemeAndOkMakeItCurrentAndOverwriteTheCustomScheme)
{
    ColorTable::setCurrentScheme(2);
    ColorTable::setCustomColor(ColorTable::GridColor, {0.1, 0.2, 0.3, 1});
    ChangeColorsDialog dialog;
    dialog.show();
    click(dialog, "btnLoadDefaultColors");
    expectShown(dialog, "000000", "666666", "000000", "ffffff");
    clickStandard(dialog, QDialogButtonBox::Ok);
    EXPECT_EQ(ColorTable::currentScheme(), 0U);
    expectCustomRow(0, {0, 0, 0, 1});
    expectCustomRow(1, {1, 1, 1, 1});
    expectCustomRow(2, {0.4, 0.4, 0.4, 1});
    expectCustomRow(3, {0, 0, 0, 0});
}

TEST_F(ChangeColorsDialogTest, OkAloneKeepsTheSchemeAndStillOverwritesTheCustomScheme)
{
    ChangeColorsDialog dialog;
    dialog.show();
    clickStandard(dialog, QDialogButtonBox::Ok);
    EXPECT_EQ(ColorTable::currentScheme(), 0U);
    // The default scheme's object colour; the custom one was red.
    expectCustomRow(0, {0, 0, 0, 1});
}

TEST_F(ChangeColorsDialogTest, CancelLeavesTheTableAlone)
{
    ChangeColorsDialog dialog;
    dialog.show();
    click(dialog, "btnLoadLowColors");
    choose(dialog, "btnGridColor", QColor(10, 20, 30));
    clickStandard(dialog, QDialogButtonBox::Cancel);
    EXPECT_EQ(dialog.result(), QDialog::Rejected);
    EXPECT_EQ(ColorTable::currentScheme(), 0U);
    for (unsigned row = 0; row < 9; ++row)
        expectCustomRow(row, firstCustomColors[row]);
}

TEST_F(ChangeColorsDialogTest, EachColorButtonChangesItsOwnRowAndChoosesTheCustomScheme)
{
    struct Case
    {
        const char *button;
        unsigned row;
    };
    // The low scheme's colours, by row.
    const std::array<Vector4D, 4> low{
        {{1, 1, 1, 1}, {0, 0, 0, 1}, {0.4, 0.4, 0.4, 1}, {1, 1, 1, 0}}};
    for (const Case &c : {Case{"btnBackgroundColor", 3}, Case{"btnGridColor", 2},
                          Case{"btnObjectColor", 0}, Case{"btnOutlineColor", 1}}) {
        SCOPED_TRACE(c.button);
        restoreTable();
        ColorTable::setCurrentScheme(1);
        ChangeColorsDialog dialog;
        dialog.show();
        choose(dialog, c.button, QColor(9, 128, 255));
        EXPECT_EQ(shown(dialog, c.button), "border: none;background-color : #0980ff;\n");
        EXPECT_EQ(ColorTable::currentScheme(), 1U);

        clickStandard(dialog, QDialogButtonBox::Ok);
        EXPECT_EQ(ColorTable::currentScheme(), 2U);
        for (unsigned row = 0; row < 4; ++row) {
            expectCustomRow(row, row == c.row ? Vector4D(9.0 / 255, 128.0 / 255, 1, 1) : low[row]);
        }
        for (unsigned row = 4; row < 9; ++row)
            expectCustomRow(row, firstCustomColors[row]);
    }
}

TEST_F(ChangeColorsDialogTest, ColorDialogHasItsTitleAndOpensWithTheColorShown)
{
    ColorTable::setCurrentScheme(2);
    ColorTable::setCustomColor(ColorTable::GridColor, {0.2, 0.4, 0.6, 1});
    ChangeColorsDialog dialog;
    dialog.show();
    ColorDialogDriver driver([](QColorDialog &colors) {
        EXPECT_EQ(colors.windowTitle(), QStringLiteral("Select new color"));
        EXPECT_EQ(colors.currentColor().rgb(), qRgb(51, 102, 153));
        colors.reject();
    });
    click(dialog, "btnGridColor");
    EXPECT_TRUE(driver.found());
}

TEST_F(ChangeColorsDialogTest, ACanceledColorChangesNothing)
{
    ChangeColorsDialog dialog;
    dialog.show();
    ColorDialogDriver driver([](QColorDialog &colors) {
        colors.setCurrentColor(QColor(1, 2, 3));
        colors.reject();
    });
    click(dialog, "btnObjectColor");
    EXPECT_TRUE(driver.found());
    expectShown(dialog, "000000", "666666", "000000", "ffffff");
    clickStandard(dialog, QDialogButtonBox::Ok);
    EXPECT_EQ(ColorTable::currentScheme(), 0U);
}

TEST_F(ChangeColorsDialogTest, ASchemeButtonAfterAColorDropsTheColor)
{
    ChangeColorsDialog dialog;
    dialog.show();
    choose(dialog, "btnObjectColor", QColor(1, 2, 3));
    click(dialog, "btnLoadLowColors");
    expectShown(dialog, "ffffff", "666666", "ffffff", "000000");
    clickStandard(dialog, QDialogButtonBox::Ok);
    EXPECT_EQ(ColorTable::currentScheme(), 1U);
    expectCustomRow(0, {1, 1, 1, 1});
}
