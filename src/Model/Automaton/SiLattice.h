#pragma once

#include "Model/Automaton/SiCell.h"
#include "Util/Vector3D.h"

#include <boost/shared_ptr.hpp>

#include <array>
#include <cstdint>
#include <list>
#include <utility>
#include <vector>

namespace Model::Automaton {

class TotalVolume;

/// The silicon crystal over a volume, for etching atom by atom: the diamond structure with a cubic
/// unit cell of edge 1 in world units, turned by 45 degrees about z. So the top of a wafer is a
/// (100) plane, and the x and y axes of the volume lie along 110 directions.
///
/// Only unit cells with an atom in silicon are kept. They own their atoms; the bonds between atoms
/// are plain pointers and valid as long as the lattice. The lattice does not follow when the cells of
/// the volume change. Belongs to the thread that runs the process.
class SiLattice final
{
public:
    /// Unit cell (i, j, k) has the key (cellsY * i + j) * cellsZ + k.
    using Entry = std::pair<std::uint32_t, boost::shared_ptr<SiCell>>;
    using MaskAtoms = std::list<boost::shared_ptr<SiAtom>>;

    /// The volume is not owned and outlives the lattice.
    explicit SiLattice(TotalVolume *volume);
    SiLattice(const SiLattice &) = delete;
    SiLattice &operator=(const SiLattice &) = delete;

    /// Fills the lattice from the cells, counts the atoms of each silicon cell in both arrays, on
    /// top of what they count already, and makes the bonds. Called once. Takes and gives back the
    /// locks of both arrays.
    void build();

    /// Extent in unit cells.
    std::uint32_t cellsX() const { return m_cellsX; }
    std::uint32_t cellsY() const { return m_cellsY; }
    std::uint32_t cellsZ() const { return m_cellsZ; }
    /// The unit cells that hold silicon, in ascending order of their keys.
    const std::vector<Entry> &cells() const { return m_cells; }
    /// The unit cell with this key; empty if it is not kept.
    boost::shared_ptr<SiCell> cell(std::uint32_t key) const;
    /// Mask atoms that the last etching has left.
    MaskAtoms &maskAtoms() { return m_maskAtoms; }
    /// The corners of a turned unit cell, relative to its position.
    const std::array<Util::Vector3D, 8> &corners() const { return m_corners; }

private:
    /// Where the atoms of a column of unit cells lie in the grid: the same for all of them.
    struct ColumnPlace
    {
        bool isInside;
        /// Index of the lowest grid cell.
        std::uint32_t base;
    };
    using ColumnPlaces = std::array<ColumnPlace, SiCell::Atoms>;
    /// The layer of the grid that an atom lies in; -1 outside.
    using Layers = std::array<std::int64_t, SiCell::Atoms>;

    ColumnPlaces columnPlaces(std::uint32_t i, std::uint32_t j) const;
    std::vector<Layers> layersOfAtoms() const;
    void buildCells();
    void linkCells();
    /// In m_cells, of the unit cell; null if it is not kept.
    SiCell *find(std::uint32_t i, std::uint32_t j, std::uint32_t k) const;

    MaskAtoms m_maskAtoms;
    std::vector<Entry> m_cells;
    /// Where in m_cells each column (i, j) begins, and one more.
    std::vector<std::uint32_t> m_columnStarts;
    TotalVolume *m_volume;
    std::uint32_t m_sizeX;
    std::uint32_t m_sizeY;
    std::uint32_t m_sizeZ;
    Util::Vector3D m_position;
    Util::Vector3D m_origin;
    std::uint32_t m_cellsX;
    std::uint32_t m_cellsY;
    std::uint32_t m_cellsZ;
    std::array<Util::Vector3D, 8> m_corners;
};

} // namespace Model::Automaton
