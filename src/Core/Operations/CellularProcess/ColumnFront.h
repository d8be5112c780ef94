#pragma once

#include "Core/Operations/CellularProcess/StripRun.h"
#include "Core/Operations/CellularProcess/TakenVoxels.h"
#include "Model/Automaton/Voxel.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <vector>

namespace Model::Automaton {
class TotalVolume;
}

namespace Core::Operations {

/// What the processes share that remove a film along z, column by column, one cell a step: the cell
/// arrays of a run and the lists of their strips. A front never leaves its column, so strips
/// exchange nothing and need no locks. The columns are numbered x * sizeY + y.
class ColumnFront final
{
public:
    /// `film` is the material that goes. The volume is not owned. Nothing is done to its cells.
    ColumnFront(Model::Automaton::TotalVolume *volume, std::uint32_t film, std::uint32_t strips);
    ColumnFront(const ColumnFront &) = delete;
    ColumnFront &operator=(const ColumnFront &) = delete;

    std::uint32_t sizeX() const { return m_sizeX; }

    /// Takes both arrays for a run; for its controlling thread.
    TakenVoxels takeVoxels() { return {*m_volume, m_voxels, m_nextVoxels}; }

    /// Lists the film's cells of x in [start, end) that lie under void in a column that
    /// opensAbove(column) answers true for, or over void where opensBelow(column) does. The faces
    /// of the volume are no void.
    template <typename Above, typename Below>
    void initializeStrip(std::uint32_t start, std::uint32_t end, std::uint32_t strip,
                         Above &&opensAbove, Below &&opensBelow);
    /// Removes the listed cells, lists the film's cell above each where rises(column), that below
    /// it where sinks(column), and commits.
    template <typename Rises, typename Sinks>
    void stepStrip(std::uint32_t strip, Rises &&rises, Sinks &&sinks);
    /// Cells that the next step of the strip visits.
    std::size_t listSize(std::uint32_t strip) const { return m_surfaceCells[strip].size(); }

private:
    using Voxel = Model::Automaton::Voxel;
    /// Cell indices, ascending, without duplicates.
    using CellList = std::vector<std::int32_t>;

    bool isFilm(std::int32_t cell) const { return m_voxels[cell].material() == m_film; }

    Model::Automaton::TotalVolume *m_volume;
    std::uint32_t m_film;
    std::uint32_t m_sizeX;
    std::uint32_t m_sizeY;
    std::uint32_t m_sizeZ;
    /// One a strip.
    std::vector<CellList> m_surfaceCells;
    Voxel *m_voxels = nullptr;
    Voxel *m_nextVoxels = nullptr;
};

template <typename Above, typename Below>
void ColumnFront::initializeStrip(std::uint32_t start, std::uint32_t end, std::uint32_t strip,
                                  Above &&opensAbove, Below &&opensBelow)
{
    CellList &cells = m_surfaceCells[strip];
    cells.clear();
    const std::size_t last = std::size_t{end} * m_sizeY;
    for (std::size_t column = std::size_t{start} * m_sizeY; column < last; ++column) {
        const bool above = opensAbove(column);
        const bool below = opensBelow(column);
        const std::size_t base = column * m_sizeZ;
        const Voxel *voxels = m_voxels + base;
        for (std::uint32_t z = 0; z < m_sizeZ; ++z) {
            if (voxels[z].material() != m_film)
                continue;
            if ((above && z + 1 < m_sizeZ && voxels[z + 1].material() == 0) ||
                (below && z > 0 && voxels[z - 1].material() == 0))
                cells.push_back(static_cast<std::int32_t>(base + z));
        }
    }
}

template <typename Rises, typename Sinks>
void ColumnFront::stepStrip(std::uint32_t strip, Rises &&rises, Sinks &&sinks)
{
    CellList &cells = m_surfaceCells[strip];
    // Both ascend as the list does.
    CellList risen;
    CellList sunk;
    for (const std::int32_t c : cells) {
        if (!isFilm(c))
            continue;
        m_nextVoxels[c].setMaterial(0);
        const std::uint32_t column = static_cast<std::uint32_t>(c) / m_sizeZ;
        const std::uint32_t z = static_cast<std::uint32_t>(c) % m_sizeZ;
        if (z + 1 < m_sizeZ && rises(column) && isFilm(c + 1))
            risen.push_back(c + 1);
        if (z > 0 && sinks(column) && isFilm(c - 1))
            sunk.push_back(c - 1);
    }
    for (const std::int32_t c : cells)
        m_voxels[c].setMaterial(m_nextVoxels[c].material());
    cells.clear();
    std::set_union(risen.begin(), risen.end(), sunk.begin(), sunk.end(), std::back_inserter(cells));
}

} // namespace Core::Operations
