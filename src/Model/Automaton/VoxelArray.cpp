#include "Model/Automaton/VoxelArray.h"

#include <cstddef>
#include <memory>
#include <new>
#include <type_traits>

namespace Model::Automaton {

static_assert(std::is_trivially_destructible_v<Voxel>, "the array frees its memory without a walk");
static_assert(sizeof(Voxel) == 24,
              "a simulation step walks memory: a cell must not grow unnoticed");

// Raw memory, constructed in one pass: a plain array would be written by its default constructors
// first, and a volume's memory is what its construction waits for.
VoxelArray::VoxelArray(std::uint32_t count, const std::vector<std::uint32_t> &materialIds)
    : m_cells(static_cast<Voxel *>(::operator new (std::size_t{count} * sizeof(Voxel))))
{
    for (std::size_t i = 0; i < count; ++i)
        new (m_cells + i) Voxel(materialIds[i]);
}

VoxelArray::~VoxelArray()
{
    ::operator delete(m_cells);
}

} // namespace Model::Automaton
