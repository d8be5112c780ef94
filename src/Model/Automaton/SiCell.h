#pragma once

#include "Model/Automaton/SiAtom.h"
#include "Util/Vector3D.h"

#include <boost/shared_ptr.hpp>
#include <boost/smart_ptr/enable_shared_from_this.hpp>

#include <array>
#include <cstdint>

namespace Model::Automaton {

/// One unit cell of the diamond structure, of edge 1 in world units. Holds its eight atoms in one
/// piece of memory with itself; a shared pointer to an atom keeps the whole cell.
class SiCell final : public boost::enable_shared_from_this<SiCell>
{
public:
    static constexpr unsigned Atoms = 8;
    /// What rankOf() gives for an atom of another cell.
    static constexpr std::uint32_t NoRank = ~std::uint32_t{0};

    /// Places of the atoms in a cell that is not turned, by rank.
    static const std::array<std::array<double, 3>, Atoms> &basis();

    /// Makes the atoms at `position` and the bonds inside the cell.
    explicit SiCell(const Util::Vector3D &position);
    /// The same with the atoms at these places, by rank.
    SiCell(const Util::Vector3D &position, const std::array<Util::Vector3D, Atoms> &places);
    SiCell(const SiCell &) = delete;
    SiCell &operator=(const SiCell &) = delete;

    /// Rank from 0 to 7; bonds are told by it.
    SiAtom &atom(unsigned rank) { return m_atoms[rank]; }
    const SiAtom &atom(unsigned rank) const { return m_atoms[rank]; }
    /// In order of rank. The cell has to be held by a shared pointer.
    std::array<boost::shared_ptr<SiAtom>, Atoms> atoms();
    std::uint32_t rankOf(const SiAtom &atom) const;
    /// The cell's corner (0, 0, 0) in the world.
    const Util::Vector3D &position() const { return m_position; }

    /// Turns cell and atoms about the axes of the world, x first, by degrees.
    void rotate(double aboutX, double aboutY, double aboutZ);
    void translate(const Util::Vector3D &offset);

private:
    std::array<SiAtom, Atoms> m_atoms;
    Util::Vector3D m_position;
};

} // namespace Model::Automaton
