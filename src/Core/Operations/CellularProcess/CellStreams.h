#pragma once

#include "Model/Automaton/Voxel.h"

#include <cstddef>

namespace Core::Operations {

/// Fetches the cells [first, end) of a column, for a pass over all columns that has nothing to do
/// there. Processors foresee a walk through memory only as long as it has no gaps: to read
/// everything takes half as long as to leave a quarter out.
inline void passOver(const Model::Automaton::Voxel *cells, std::size_t first, std::size_t end)
{
    constexpr std::size_t CellsInLine = 64 / sizeof(Model::Automaton::Voxel);
    for (std::size_t z = first; z < end; z += CellsInLine)
        __builtin_prefetch(cells + z);
}

/// The same for both arrays.
inline void passOver(const Model::Automaton::Voxel *cells, const Model::Automaton::Voxel *nextCells,
                     std::size_t first, std::size_t end)
{
    constexpr std::size_t CellsInLine = 64 / sizeof(Model::Automaton::Voxel);
    for (std::size_t z = first; z < end; z += CellsInLine) {
        __builtin_prefetch(cells + z);
        __builtin_prefetch(nextCells + z);
    }
}

} // namespace Core::Operations
