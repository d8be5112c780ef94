#include "Model/Automaton/SiLattice.h"

#include "Model/Automaton/LatticeRotation.h"
#include "Model/Automaton/TakenCells.h"
#include "Model/Automaton/TotalVolume.h"

#include <boost/make_shared.hpp>

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace Model::Automaton {

namespace {

constexpr double Turn = 45.0;

struct OuterBond
{
    unsigned rankHere;
    unsigned rankThere;
    unsigned position;
};

/// A neighbour of a unit cell and the bonds to it; all lie upward in index.
struct Neighbour
{
    std::uint32_t di;
    std::uint32_t dj;
    std::uint32_t dk;
    std::vector<OuterBond> bonds;
};

const std::array<Neighbour, 6> &neighbours()
{
    static const std::array<Neighbour, 6> Table = {{{0, 1, 0, {{3, 4, 3}, {7, 4, 1}}},
                                                    {1, 0, 0, {{3, 5, 2}, {6, 5, 1}}},
                                                    {0, 0, 1, {{6, 1, 3}, {7, 1, 2}}},
                                                    {1, 1, 0, {{3, 0, 1}}},
                                                    {1, 0, 1, {{6, 0, 2}}},
                                                    {0, 1, 1, {{7, 0, 3}}}}};
    return Table;
}

/// Truncated towards 0 if it is from 0 up to but not including `size`; -1 otherwise.
std::int64_t gridLayer(double distance, float cellSize, std::uint32_t size)
{
    const auto layer = static_cast<float>(distance / static_cast<double>(cellSize));
    // Also false for what is not a number.
    if (!(layer >= 0.0f && layer < static_cast<float>(size)))
        return -1;
    return static_cast<std::int64_t>(layer);
}

} // namespace

SiLattice::SiLattice(TotalVolume *volume)
    : m_volume(volume),
      m_sizeX(volume->sizeX()),
      m_sizeY(volume->sizeY()),
      m_sizeZ(volume->sizeZ()),
      m_position(volume->position()),
      m_cellsX(static_cast<std::uint32_t>(std::ceil(
          (static_cast<double>(m_sizeX) + static_cast<double>(m_sizeY)) / std::sqrt(2.0)))),
      m_cellsY(m_cellsX),
      m_cellsZ(m_sizeZ)
{
    const double s = std::sqrt(2.0) / 2.0;
    const double d = std::sqrt(2.0);
    m_corners = {Util::Vector3D(0.0, 0.0, 0.0), Util::Vector3D(0.0, 0.0, 1.0),
                 Util::Vector3D(-s, s, 0.0),    Util::Vector3D(-s, s, 1.0),
                 Util::Vector3D(s, s, 0.0),     Util::Vector3D(s, s, 1.0),
                 Util::Vector3D(0.0, d, 0.0),   Util::Vector3D(0.0, d, 1.0)};
}

void SiLattice::build()
{
    // Both offsets take the size along x on purpose, also where the volume is not square.
    const double half = static_cast<double>(m_sizeX) * 0.5;
    m_origin = Util::Vector3D(m_position[0] + half, m_position[1] - half, m_position[2]);
    // A volume with a size of 0 may be of any size along the other axes.
    if (m_sizeX == 0 || m_sizeY == 0 || m_sizeZ == 0)
        return;
    buildCells();
    linkCells();
}

bool SiLattice::Column::isInside() const
{
    return std::any_of(bases.begin(), bases.end(),
                       [](const std::optional<std::uint32_t> &base) { return base.has_value(); });
}

SiLattice::Column SiLattice::columnAt(std::uint32_t i, std::uint32_t j) const
{
    // The arithmetic of SiCell, as far as x and y go, which height has no part in.
    static const LatticeRotation rotation(0.0, 0.0, Turn);
    const auto x = static_cast<double>(i);
    const auto y = static_cast<double>(j);
    Column column;
    column.corner = rotation.apply({x, y, 0.0}) + m_origin;
    for (unsigned rank = 0; rank < SiCell::Atoms; ++rank) {
        const std::array<double, 3> &basis = SiCell::basis()[rank];
        const Util::Vector3D place =
            rotation.apply({x + basis[0], y + basis[1], basis[2]}) + m_origin;
        column.places[rank] = place;
        const std::int64_t gridX =
            gridLayer(place[0] - m_position[0], m_volume->cellSizeX(), m_sizeX);
        const std::int64_t gridY =
            gridLayer(place[1] - m_position[1], m_volume->cellSizeY(), m_sizeY);
        if (gridX >= 0 && gridY >= 0)
            column.bases[rank] =
                (static_cast<std::uint32_t>(gridX) * m_sizeY + static_cast<std::uint32_t>(gridY)) *
                m_sizeZ;
    }
    return column;
}

std::vector<SiLattice::Heights> SiLattice::heightsOfAtoms() const
{
    std::vector<Heights> heights(m_cellsZ);
    for (std::uint32_t k = 0; k < m_cellsZ; ++k)
        for (unsigned rank = 0; rank < SiCell::Atoms; ++rank) {
            const double z = static_cast<double>(k) + SiCell::basis()[rank][2] + m_origin[2];
            heights[k][rank] = {z, gridLayer(z - m_position[2], m_volume->cellSizeZ(), m_sizeZ)};
        }
    return heights;
}

void SiLattice::buildCells()
{
    const std::vector<Heights> heights = heightsOfAtoms();
    m_columnStarts.assign(std::size_t{m_cellsX} * m_cellsY + 1, 0);
    const TakenCells takenVoxels(*m_volume);
    const TakenCells takenNextVoxels(*m_volume, TakenCells::NextVoxels);
    Voxel *voxels = takenVoxels.cells();
    Voxel *nextVoxels = takenNextVoxels.cells();
    std::size_t column = 0;
    for (std::uint32_t i = 0; i < m_cellsX; ++i)
        for (std::uint32_t j = 0; j < m_cellsY; ++j) {
            m_columnStarts[column++] = static_cast<std::uint32_t>(m_cells.size());
            Column cells = columnAt(i, j);
            if (!cells.isInside())
                continue;
            for (std::uint32_t k = 0; k < m_cellsZ; ++k) {
                // -1 outside.
                std::array<std::int64_t, SiCell::Atoms> index{};
                bool holdsSilicon = false;
                for (unsigned rank = 0; rank < SiCell::Atoms; ++rank) {
                    const std::int64_t layer = heights[k][rank].layer;
                    index[rank] = cells.bases[rank] && layer >= 0 ? *cells.bases[rank] + layer : -1;
                    holdsSilicon |=
                        index[rank] >= 0 && voxels[index[rank]].material() == Voxel::Silicon;
                }
                if (!holdsSilicon)
                    continue;
                cells.corner[2] = static_cast<double>(k) + m_origin[2];
                for (unsigned rank = 0; rank < SiCell::Atoms; ++rank)
                    cells.places[rank][2] = heights[k][rank].z;
                const auto cell = boost::make_shared<SiCell>(cells.corner, cells.places);
                for (unsigned rank = 0; rank < SiCell::Atoms; ++rank) {
                    SiAtom &atom = cell->atom(rank);
                    if (index[rank] < 0) {
                        atom.setState(SiAtom::Mask);
                        continue;
                    }
                    atom.setCellIndex(static_cast<std::int32_t>(index[rank]));
                    Voxel &voxel = voxels[index[rank]];
                    if (voxel.material() == Voxel::Silicon) {
                        voxel.setAtoms(voxel.atoms() + 1);
                        nextVoxels[index[rank]].setAtoms(voxel.atoms());
                    } else {
                        atom.setState(voxel.material() == 0 ? SiAtom::Removed : SiAtom::Mask);
                    }
                }
                m_cells.emplace_back((m_cellsY * i + j) * m_cellsZ + k, cell);
            }
        }
    m_columnStarts[column] = static_cast<std::uint32_t>(m_cells.size());
}

void SiLattice::linkCells()
{
    for (const Entry &entry : m_cells) {
        const std::uint32_t k = entry.first % m_cellsZ;
        const std::uint32_t j = entry.first / m_cellsZ % m_cellsY;
        const std::uint32_t i = entry.first / m_cellsZ / m_cellsY;
        for (const Neighbour &neighbour : neighbours()) {
            SiCell *there = find(i + neighbour.di, j + neighbour.dj, k + neighbour.dk);
            if (!there)
                continue;
            for (const OuterBond &bond : neighbour.bonds)
                entry.second->atom(bond.rankHere)
                    .linkTo(there->atom(bond.rankThere), bond.position);
        }
    }
}

SiCell *SiLattice::find(std::uint32_t i, std::uint32_t j, std::uint32_t k) const
{
    if (i >= m_cellsX || j >= m_cellsY || k >= m_cellsZ || m_columnStarts.empty())
        return nullptr;
    const std::uint32_t column = m_cellsY * i + j;
    const std::uint32_t key = column * m_cellsZ + k;
    const auto first = m_cells.begin() + m_columnStarts[column];
    const auto last = m_cells.begin() + m_columnStarts[column + 1];
    const auto found =
        std::lower_bound(first, last, key, [](const Entry &entry, std::uint32_t wanted) {
            return entry.first < wanted;
        });
    return found != last && found->first == key ? found->second.get() : nullptr;
}

boost::shared_ptr<SiCell> SiLattice::cell(std::uint32_t key) const
{
    if (m_cellsY == 0 || m_cellsZ == 0)
        return {};
    SiCell *found = find(key / m_cellsZ / m_cellsY, key / m_cellsZ % m_cellsY, key % m_cellsZ);
    return found ? found->shared_from_this() : boost::shared_ptr<SiCell>();
}

} // namespace Model::Automaton
