#pragma once

#include "Model/Automaton/CutLimits.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace Model::Automaton {

/// Where the vertices of marching cubes can lie: at whole and half cells. An index along an axis
/// counts half cells, from 0 to twice the size inclusive.
class VertexLattice final
{
public:
    VertexLattice(const CellTriple &sizes, const std::array<float, 3> &cellSizes);

    /// In drawing units.
    float position(unsigned axis, std::size_t index) const { return m_positions[axis][index]; }

    /// What the smoothing groups vertices by: (sizeY * ix + iy) * sizeZ + iz, in unsigned 32-bit
    /// arithmetic. Each axis has its share of this sum in a table.
    std::uint32_t key(std::size_t indexX, std::size_t indexY, std::size_t indexZ) const
    {
        return m_keys[0][indexX] + m_keys[1][indexY] + m_keys[2][indexZ];
    }

    /// How many keys, from the lowest one on, the vertices of all cubes with one x can have. The
    /// lowest key never falls as x rises, so that a walk through x needs a window of this many keys
    /// at a time. 0 if keys do not rise with x, y and z.
    std::size_t keyRange() const { return m_keyRange; }

private:
    void findKeyRange(const CellTriple &sizes,
                      const std::array<std::vector<std::int64_t>, 3> &cells);

    std::array<std::vector<float>, 3> m_positions;
    std::array<std::vector<std::uint32_t>, 3> m_keys;
    std::size_t m_keyRange = 0;
};

} // namespace Model::Automaton
