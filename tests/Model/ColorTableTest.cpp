#include "Model/ColorTable.h"

#include <gtest/gtest.h>

#include <array>

using Model::ColorTable;
using Util::Vector4D;

namespace {

struct Row
{
    const char *name;
    std::array<Vector4D, 3> colors;
};

const std::array<Row, 9> rows{{
    {"Object Color", {{{0, 0, 0, 1}, {1, 1, 1, 1}, {1, 0, 0, 1}}}},
    {"Outline Color", {{{1, 1, 1, 1}, {0, 0, 0, 1}, {1, 1, 1, 1}}}},
    {"Grid Color", {{{0.4, 0.4, 0.4, 1}, {0.4, 0.4, 0.4, 1}, {0.4, 0.4, 0.4, 1}}}},
    {"Background Color", {{{0, 0, 0, 0}, {1, 1, 1, 0}, {0, 0, 0, 0}}}},
    {"Substrate Object Color", {{{0.4, 0.4, 0.4, 1}, {0.4, 0.4, 0.4, 1}, {0.4, 0.4, 0.4, 1}}}},
    {"Substrate Outline Color", {{{0.6, 0.6, 0.6, 1}, {0.6, 0.6, 0.6, 1}, {0.6, 0.6, 0.6, 1}}}},
    {"Console Background Color", {{{1, 1, 1, 1}, {0, 0, 0, 1}, {1, 1, 1, 1}}}},
    {"Console Text Color", {{{0, 0, 0, 1}, {1, 1, 1, 1}, {0, 0, 0, 1}}}},
    {"Object Temporary Color", {{{1, 1, 1, 1}, {0, 0, 0, 1}, {1, 1, 1, 1}}}},
}};

void expectColor(const Vector4D &actual, const Vector4D &expected)
{
    for (unsigned component = 0; component < 4; ++component)
        EXPECT_DOUBLE_EQ(actual[component], expected[component]) << "component " << component;
}

class ColorTableTest : public ::testing::Test
{
protected:
    void TearDown() override
    {
        ColorTable::setCurrentScheme(0);
        for (unsigned row = 0; row < rows.size(); ++row)
            ColorTable::setCustomColor(row, rows[row].colors[2]);
    }
};

} // namespace

TEST_F(ColorTableTest, StartsWithTheColorsOfTheThreeSchemes)
{
    for (unsigned row = 0; row < rows.size(); ++row) {
        for (unsigned scheme = 0; scheme < 3; ++scheme) {
            SCOPED_TRACE(testing::Message() << "row " << row << ", scheme " << scheme);
            expectColor(ColorTable::colorSetting(row, scheme), rows[row].colors[scheme]);
        }
    }
}

TEST_F(ColorTableTest, RowsKeepTheirNames)
{
    for (unsigned row = 0; row < rows.size(); ++row)
        EXPECT_EQ(ColorTable::rowName(row).toStdString(), rows[row].name);
}

TEST_F(ColorTableTest, RowConstantsNumberTheRows)
{
    EXPECT_EQ(ColorTable::ObjectColor, 0U);
    EXPECT_EQ(ColorTable::OutlineColor, 1U);
    EXPECT_EQ(ColorTable::GridColor, 2U);
    EXPECT_EQ(ColorTable::BackgroundColor, 3U);
    EXPECT_EQ(ColorTable::SubstrateObjectColor, 4U);
    EXPECT_EQ(ColorTable::SubstrateOutlineColor, 5U);
    EXPECT_EQ(ColorTable::ConsoleBackgroundColor, 6U);
    EXPECT_EQ(ColorTable::ConsoleTextColor, 7U);
    EXPECT_EQ(ColorTable::ObjectTemporaryColor, 8U);
}

TEST_F(ColorTableTest, DefaultSchemeIsCurrentUntilAnotherIsSet)
{
    EXPECT_EQ(ColorTable::currentScheme(), 0U);
    ColorTable::setCurrentScheme(2);
    EXPECT_EQ(ColorTable::currentScheme(), 2U);
    ColorTable::setCurrentScheme(1);
    EXPECT_EQ(ColorTable::currentScheme(), 1U);
}

TEST_F(ColorTableTest, CustomColorChangesNothingButItsRowOfTheCustomScheme)
{
    const Vector4D color(0.1, 0.2, 0.3, 0.5);
    for (unsigned current = 0; current < 3; ++current) {
        ColorTable::setCurrentScheme(current);
        ColorTable::setCustomColor(ColorTable::GridColor, color);
        for (unsigned row = 0; row < rows.size(); ++row) {
            for (unsigned scheme = 0; scheme < 3; ++scheme) {
                SCOPED_TRACE(testing::Message() << "row " << row << ", scheme " << scheme
                                                << ", current scheme " << current);
                const bool changed = row == ColorTable::GridColor && scheme == 2;
                expectColor(ColorTable::colorSetting(row, scheme),
                            changed ? color : rows[row].colors[scheme]);
            }
        }
        EXPECT_EQ(ColorTable::currentScheme(), current);
        ColorTable::setCustomColor(ColorTable::GridColor, rows[ColorTable::GridColor].colors[2]);
    }
}

TEST_F(ColorTableTest, SettingsAreHandedOutByValue)
{
    Vector4D color = ColorTable::colorSetting(ColorTable::OutlineColor, 0);
    color[0] = 0.25;
    expectColor(ColorTable::colorSetting(ColorTable::OutlineColor, 0), {1, 1, 1, 1});
}

TEST_F(ColorTableTest, RowsAndSchemesThatDoNotExistAreHarmless)
{
    expectColor(ColorTable::colorSetting(9, 0), {0, 0, 0, 0});
    expectColor(ColorTable::colorSetting(1, 3), {0, 0, 0, 0});
    EXPECT_TRUE(ColorTable::rowName(9).isEmpty());
    ColorTable::setCustomColor(9, {1, 1, 1, 1});
    ColorTable::setCurrentScheme(1);
    ColorTable::setCurrentScheme(3);
    EXPECT_EQ(ColorTable::currentScheme(), 1U);
}
