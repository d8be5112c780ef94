#pragma once

#include "Util/Vector4D.h"

#include <QString>

#include <cstdint>

namespace Model {

/// The program's colours: nine rows in three schemes, each colour red, green, blue and alpha from
/// 0 to 1. There is one table a process, and nothing of it is stored between runs.
///
/// Schemes 0 and 1 never change, so any thread may read them; scheme 2 and the current scheme
/// belong to the GUI thread.
class ColorTable final
{
public:
    enum Row : std::uint32_t
    {
        ObjectColor = 0,
        OutlineColor,
        GridColor,
        BackgroundColor,
        // Names and values of the rows below are kept for later use; nothing reads them.
        SubstrateObjectColor,
        SubstrateOutlineColor,
        ConsoleBackgroundColor,
        ConsoleTextColor,
        ObjectTemporaryColor,
        RowCount
    };

    enum Scheme : std::uint32_t
    {
        DefaultScheme = 0,
        LowScheme,
        CustomScheme,
        SchemeCount
    };

    ColorTable() = delete;

    /// The colour by value; all four components 0 for a row or scheme that does not exist.
    static Util::Vector4D colorSetting(std::uint32_t row, std::uint32_t scheme);

    /// DefaultScheme at the start.
    static std::uint32_t currentScheme();
    /// A scheme that does not exist is passed over.
    static void setCurrentScheme(std::uint32_t scheme);

    /// Writes CustomScheme only, whichever scheme is current. A row that does not exist is passed
    /// over.
    static void setCustomColor(std::uint32_t row, const Util::Vector4D &color);

    /// The name that the program keeps for the row; empty for a row that does not exist.
    static QString rowName(std::uint32_t row);
};

} // namespace Model
