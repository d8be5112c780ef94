#pragma once

#include "Model/Automaton/SiCell.h"
#include "Util/Vector3D.h"

#include <boost/shared_ptr.hpp>

#include <array>
#include <cstdint>
#include <list>
#include <optional>
#include <utility>
#include <vector>

namespace Model::Automaton {

class TotalVolume;

/// The silicon crystal over a volume, for etching atom by atom: the diamond structure with a cubic
/// unit cell of edge 1 in world units, turned by 45 degrees about z. So the top of a wafer is a
/// (100) plane, and the x and y axes of the volume lie along 110 directions.
///
/// Only unit cells with an atom in silicon are kept. They own their atoms; the bonds between atoms
/// are plain pointers and valid as long as the lattice. The lattice does not follow when the cells
/// of the volume change. Belongs to the thread that runs the process.
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
    /// locks of both arrays, unless there are no cells.
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
    /// What the unit cells of a column have in common.
    struct Column
    {
        /// Corner and atoms in the world; their height is that of the lowest unit cell.
        Util::Vector3D corner;
        std::array<Util::Vector3D, SiCell::Atoms> places;
        /// Index of the lowest grid cell of the atom's column of the grid; empty outside.
        std::array<std::optional<std::uint32_t>, SiCell::Atoms> bases;

        bool isInside() const;
    };
    /// What the atoms of one rank have in common in a layer of unit cells.
    struct Height
    {
        double z;
        /// The layer of the grid; -1 outside.
        std::int64_t layer;
    };
    using Heights = std::array<Height, SiCell::Atoms>;

    Column columnAt(std::uint32_t i, std::uint32_t j) const;
    std::vector<Heights> heightsOfAtoms() const;
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
