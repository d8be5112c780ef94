#include "Model/ColorTable.h"

#include <array>

namespace Model {

namespace {

struct RowColors
{
    const char *name;
    std::array<Util::Vector4D, ColorTable::SchemeCount> colors;
};

struct Table
{
    std::array<RowColors, ColorTable::RowCount> rows;
    std::uint32_t currentScheme;
};

// Built at the first use, so that objects made during static initialisation find it as well.
Table &table()
{
    static Table s_table{
        {{
            {"Object Color", {{{0, 0, 0, 1}, {1, 1, 1, 1}, {1, 0, 0, 1}}}},
            {"Outline Color", {{{1, 1, 1, 1}, {0, 0, 0, 1}, {1, 1, 1, 1}}}},
            {"Grid Color", {{{0.4, 0.4, 0.4, 1}, {0.4, 0.4, 0.4, 1}, {0.4, 0.4, 0.4, 1}}}},
            {"Background Color", {{{0, 0, 0, 0}, {1, 1, 1, 0}, {0, 0, 0, 0}}}},
            {"Substrate Object Color",
             {{{0.4, 0.4, 0.4, 1}, {0.4, 0.4, 0.4, 1}, {0.4, 0.4, 0.4, 1}}}},
            {"Substrate Outline Color",
             {{{0.6, 0.6, 0.6, 1}, {0.6, 0.6, 0.6, 1}, {0.6, 0.6, 0.6, 1}}}},
            {"Console Background Color", {{{1, 1, 1, 1}, {0, 0, 0, 1}, {1, 1, 1, 1}}}},
            {"Console Text Color", {{{0, 0, 0, 1}, {1, 1, 1, 1}, {0, 0, 0, 1}}}},
            {"Object Temporary Color", {{{1, 1, 1, 1}, {0, 0, 0, 1}, {1, 1, 1, 1}}}},
        }},
        ColorTable::DefaultScheme};
    return s_table;
}

} // namespace

Util::Vector4D ColorTable::colorSetting(std::uint32_t row, std::uint32_t scheme)
{
    if (row >= RowCount || scheme >= SchemeCount)
        return {};
    return table().rows[row].colors[scheme];
}

std::uint32_t ColorTable::currentScheme()
{
    return table().currentScheme;
}

void ColorTable::setCurrentScheme(std::uint32_t scheme)
{
    if (scheme < SchemeCount)
        table().currentScheme = scheme;
}

void ColorTable::setCustomColor(std::uint32_t row, const Util::Vector4D &color)
{
    if (row < RowCount)
        table().rows[row].colors[CustomScheme] = color;
}

QString ColorTable::rowName(std::uint32_t row)
{
    return row < RowCount ? QString::fromLatin1(table().rows[row].name) : QString();
}

} // namespace Model
