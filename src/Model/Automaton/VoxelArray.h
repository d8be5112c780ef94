#pragma once

#include "Model/Automaton/Voxel.h"

#include <cstdint>
#include <utility>
#include <vector>

namespace Model::Automaton {

/// One allocation of cells, each written once from its material id. Swapped with arrays of its own
/// length only.
class VoxelArray final
{
public:
    /// Takes the first `count` ids; the list must hold that many.
    VoxelArray(std::uint32_t count, const std::vector<std::uint32_t> &materialIds);
    ~VoxelArray();
    VoxelArray(const VoxelArray &) = delete;
    VoxelArray &operator=(const VoxelArray &) = delete;

    Voxel *data() const { return m_cells; }
    void swap(VoxelArray &other) noexcept { std::swap(m_cells, other.m_cells); }

private:
    Voxel *m_cells;
    std::uint32_t m_count;
};

} // namespace Model::Automaton
