#include "Model/Automaton/CellCount.h"

#include "Model/Automaton/Voxel.h"

#include <limits>

#include <unistd.h>

namespace Model::Automaton {

std::optional<std::uint32_t> countCells(std::uint32_t sizeX, std::uint32_t sizeY,
                                        std::uint32_t sizeZ)
{
    const std::uint64_t layer = std::uint64_t{sizeX} * sizeY;
    constexpr std::uint64_t Most = std::numeric_limits<std::uint32_t>::max();
    if (sizeZ != 0 && layer > Most / sizeZ)
        return {};
    return static_cast<std::uint32_t>(layer * sizeZ);
}

bool fitIntoMemory(std::uint64_t cells)
{
    const long pages = sysconf(_SC_PHYS_PAGES);
    const long pageSize = sysconf(_SC_PAGESIZE);
    if (pages <= 0 || pageSize <= 0)
        return true;
    constexpr std::uint64_t BytesOfCell = 2 * sizeof(Voxel) + sizeof(std::uint32_t);
    return cells <=
           static_cast<std::uint64_t>(pages) * static_cast<std::uint64_t>(pageSize) / BytesOfCell;
}

} // namespace Model::Automaton
