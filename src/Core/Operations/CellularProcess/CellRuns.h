#pragma once

#include "Core/Operations/CellularProcess/FrontList.h"
#include "Model/Automaton/Voxel.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace Core::Operations {

/// A bit a cell along z, for the cells [first, end) of a word.
inline FrontWord wordRange(std::uint32_t first, std::uint32_t end)
{
    return (~FrontWord{0} >> (FrontWordBits - (end - first))) << first;
}

/// Calls visit(first, end, material) for each run of equal material among the cells of a word of a
/// column of sizeZ cells; first and end count from the start of the word.
template <typename Visitor>
void forEachRun(const Model::Automaton::Voxel *column, std::uint32_t sizeZ, std::uint32_t word,
                Visitor &&visit)
{
    const Model::Automaton::Voxel *cells = column + std::size_t{word} * FrontWordBits;
    const std::uint32_t count = std::min(FrontWordBits, sizeZ - word * FrontWordBits);
    for (std::uint32_t first = 0; first < count;) {
        const std::uint32_t material = cells[first].material();
        std::uint32_t end = first + 1;
        while (end < count && cells[end].material() == material)
            ++end;
        visit(first, end, material);
        first = end;
    }
}

/// The cells of a word of a column whose material the test answers true for, a bit a cell.
template <typename Test>
FrontWord cellsOf(const Model::Automaton::Voxel *column, std::uint32_t sizeZ, std::uint32_t word,
                  Test &&test)
{
    FrontWord bits = 0;
    forEachRun(column, sizeZ, word,
               [&](std::uint32_t first, std::uint32_t end, std::uint32_t material) {
                   if (test(material))
                       bits |= wordRange(first, end);
               });
    return bits;
}

} // namespace Core::Operations
