#include "Model/Automaton/VoxelArray.h"

#include <cstddef>
#include <memory>
#include <new>
#include <type_traits>

#ifdef __linux__
#include <sys/mman.h>
#endif

namespace Model::Automaton {

static_assert(std::is_trivially_destructible_v<Voxel>, "the array frees its memory without a walk");
static_assert(sizeof(Voxel) == 24,
              "a simulation step walks memory: a cell must not grow unnoticed");

namespace {

/// The size of a large page of the machine, on whose border an array starts that fills one.
constexpr std::size_t LargePage = std::size_t{2} << 20;

std::align_val_t alignmentOf(std::size_t bytes)
{
    return std::align_val_t{bytes >= LargePage ? LargePage : alignof(std::max_align_t)};
}

Voxel *allocate(std::size_t count)
{
    const std::size_t bytes = count * sizeof(Voxel);
    void *memory = ::operator new(bytes, alignmentOf(bytes));
#ifdef __linux__
    // A front visits one cell a column, each in a page of its own: with large pages it does not
    // wait for the page table at every cell, and the array is mapped several times faster. Advice
    // that is not taken costs nothing.
    if (bytes >= LargePage)
        madvise(memory, bytes, MADV_HUGEPAGE);
#endif
    return static_cast<Voxel *>(memory);
}

} // namespace

// Raw memory, constructed in one pass: a plain array would be written by its default constructors
// first, and a volume's memory is what its construction waits for.
VoxelArray::VoxelArray(std::uint32_t count, const std::vector<std::uint32_t> &materialIds)
    : m_cells(allocate(count)),
      m_count(count)
{
    for (std::size_t i = 0; i < count; ++i)
        new (m_cells + i) Voxel(materialIds[i]);
}

VoxelArray::~VoxelArray()
{
    ::operator delete(m_cells, alignmentOf(std::size_t{m_count} * sizeof(Voxel)));
}

} // namespace Model::Automaton
