#include "UI/Operations/SimpleOxidationOptionsDialog.h"

#include "UI/OptionsDialogs.h"

#include <QDoubleSpinBox>
#include <QRadioButton>

namespace {

class SimpleOxidationOptionsDialogTest : public testing::Test
{
protected:
    template <typename Widget>
    Widget *find(const char *name)
    {
        return OptionsDialogs::find<Widget>(m_dialog, name);
    }
    void choose(const char *name)
    {
        auto *button = find<QRadioButton>(name);
        QTest::mouseClick(button, Qt::LeftButton, Qt::NoModifier, QPoint(8, button->height() / 2));
    }
    /// Whether the furnace conditions can be typed, and whether the thickness can.
    void expectEnabled(bool conditions, bool thickness)
    {
        for (const char *name : {"dblTime", "dblTemperature", "dblPressure"})
            EXPECT_EQ(find<QDoubleSpinBox>(name)->isEnabled(), conditions) << name;
        EXPECT_EQ(find<QDoubleSpinBox>("dblThickness")->isEnabled(), thickness);
        EXPECT_TRUE(find<QDoubleSpinBox>("dblCellUnitsPerMicron")->isEnabled());
    }
    void expectField(const char *name, double minimum, double maximum, double step,
                     const char *text)
    {
        const auto *box = find<QDoubleSpinBox>(name);
        EXPECT_EQ(box->minimum(), minimum) << name;
        EXPECT_EQ(box->maximum(), maximum) << name;
        EXPECT_EQ(box->singleStep(), step) << name;
        EXPECT_EQ(box->decimals(), 2) << name;
        EXPECT_EQ(box->text(), text) << name;
    }

    Ui::Operations::SimpleOxidationOptionsDialog m_dialog;
};

TEST_F(SimpleOxidationOptionsDialogTest, TitleAndTextsAreThoseOfTheProcess)
{
    EXPECT_EQ(m_dialog.windowTitle(), "Si Oxidation Options");
    EXPECT_EQ(m_dialog.objectName(), "SimpleOxidationOptionsBaseDialog");
    EXPECT_EQ(OptionsDialogs::labelsOf(m_dialog),
              (QStringList{"Time: dblTime", "Temperature: dblTemperature", "Pressure: dblPressure",
                           "Cell units per micron: dblCellUnitsPerMicron"}));
    EXPECT_EQ(find<QRadioButton>("rbtTime")->text(), "Oxidation Time");
    EXPECT_EQ(find<QRadioButton>("rbtThickness")->text(), "Oxide thickness");
}

TEST_F(SimpleOxidationOptionsDialogTest, EachFieldHasItsRangeAndItsFirstValue)
{
    expectField("dblThickness", 0.0, 100000.0, 1.0, "10.00 microns");
    expectField("dblTime", 0.0, 1000.0, 1.0, "2.00 hours");
    expectField("dblTemperature", 0.0, 2000.0, 1.0, "1273.00 K");
    expectField("dblPressure", 0.0, 1.0, 0.1, "1.00 atm");
    expectField("dblCellUnitsPerMicron", 0.01, 1e9, 1.0, "100.00");
    EXPECT_EQ(m_dialog.thickness(), 10.0);
    EXPECT_EQ(m_dialog.time(), 2.0);
    EXPECT_EQ(m_dialog.temperature(), 1273.0);
    EXPECT_EQ(m_dialog.pressure(), 1.0);
    EXPECT_EQ(m_dialog.cellUnitsPerMicron(), 100.0);
}

TEST_F(SimpleOxidationOptionsDialogTest, HelpTellsWhatTheConversionIs)
{
    OptionsDialogs::expectHelp(m_dialog, {"lblCellUnitsPerMicron"},
                               "Conversion between cell units and microns. Si cells are "
                               "approximately 1.0 x 1.0 x 0.35 units.");
}

TEST_F(SimpleOxidationOptionsDialogTest, TheThicknessIsChosenAtTheStart)
{
    EXPECT_FALSE(m_dialog.isTimeChosen());
    EXPECT_TRUE(find<QRadioButton>("rbtThickness")->isChecked());
    expectEnabled(false, true);
}

TEST_F(SimpleOxidationOptionsDialogTest, TheChoiceEnablesTheFieldsThatBelongToIt)
{
    OptionsDialogs::open(m_dialog);
    choose("rbtTime");
    EXPECT_TRUE(m_dialog.isTimeChosen());
    EXPECT_FALSE(find<QRadioButton>("rbtThickness")->isChecked());
    expectEnabled(true, false);
    choose("rbtThickness");
    EXPECT_FALSE(m_dialog.isTimeChosen());
    expectEnabled(false, true);
    choose("rbtThickness");
    expectEnabled(false, true);
}

TEST_F(SimpleOxidationOptionsDialogTest, TheThicknessStandsBesideItsButton)
{
    OptionsDialogs::open(m_dialog);
    const auto middle = [this](const char *name) {
        const auto *widget = find<QWidget>(name);
        return widget->mapTo(&m_dialog, widget->rect().center());
    };
    EXPECT_LE(std::abs(middle("rbtThickness").y() - middle("dblThickness").y()), 2);
    EXPECT_LT(middle("rbtThickness").x(), middle("dblThickness").x());
    EXPECT_LT(middle("rbtTime").y(), middle("rbtThickness").y());
}

TEST_F(SimpleOxidationOptionsDialogTest, WhatIsTypedIsRead)
{
    OptionsDialogs::open(m_dialog);
    OptionsDialogs::typeInto(*find<QDoubleSpinBox>("dblThickness"), "7.25");
    OptionsDialogs::typeInto(*find<QDoubleSpinBox>("dblCellUnitsPerMicron"), "0.5");
    choose("rbtTime");
    OptionsDialogs::typeInto(*find<QDoubleSpinBox>("dblTime"), "0");
    OptionsDialogs::typeInto(*find<QDoubleSpinBox>("dblTemperature"), "0");
    OptionsDialogs::typeInto(*find<QDoubleSpinBox>("dblPressure"), "0.25");
    EXPECT_EQ(m_dialog.thickness(), 7.25);
    EXPECT_EQ(m_dialog.cellUnitsPerMicron(), 0.5);
    EXPECT_EQ(m_dialog.time(), 0.0);
    EXPECT_EQ(m_dialog.temperature(), 0.0);
    EXPECT_EQ(m_dialog.pressure(), 0.25);
}

TEST_F(SimpleOxidationOptionsDialogTest, TabGoesFromTopToBottomThroughWhatIsEnabled)
{
    // Of the two buttons the chosen one takes the focus.
    EXPECT_EQ(OptionsDialogs::tabOrder(m_dialog),
              (QStringList{"rbtThickness", "dblThickness", "dblCellUnitsPerMicron"}));
}

TEST_F(SimpleOxidationOptionsDialogTest, OkAcceptsAndCancelRejects)
{
    OptionsDialogs::expectWaysToLeave(m_dialog, "dblCellUnitsPerMicron");
}

} // namespace
