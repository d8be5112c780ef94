#pragma once

#include "Util/Vector3D.h"

#include <array>
#include <cstdint>

namespace Model::Automaton {

class SiCell;

/// One atom of the silicon crystal over a volume, with its four bonds.
class SiAtom final
{
public:
    enum State : std::uint32_t
    {
        Removed = 0,
        Active = 1,
        /// In place of a bond to something that is not etched.
        Mask = 3
    };
    static constexpr unsigned Bonds = 4;

    /// `owner` is the unit cell that holds the atom, null for a mask atom outside the crystal. Owns
    /// nothing.
    explicit SiAtom(const Util::Vector3D &position = {}, SiCell *owner = nullptr,
                    bool isMask = false)
        : m_state(isMask ? Mask : Active),
          m_owner(owner),
          m_position(position)
    {}
    SiAtom(const SiAtom &) = delete;
    SiAtom &operator=(const SiAtom &) = delete;

    /// Index of the grid cell that holds the atom; -1 outside the volume.
    std::int32_t cellIndex() const { return m_cellIndex; }
    void setCellIndex(std::int32_t index) { m_cellIndex = index; }
    std::uint32_t state() const { return m_state; }
    void setState(std::uint32_t state) { m_state = state; }
    /// What continuous etching has left of the atom; 0 until it sets it.
    float mass() const { return m_mass; }
    void setMass(float mass) { m_mass = mass; }
    SiCell *owner() const { return m_owner; }
    /// World units.
    const Util::Vector3D &position() const { return m_position; }
    void setPosition(const Util::Vector3D &position) { m_position = position; }

    /// The atom bonded at a position from 0 to 3; null where none was linked.
    SiAtom *link(unsigned position) const { return m_links[position]; }
    void setLink(unsigned position, SiAtom *atom) { m_links[position] = atom; }
    /// Bonds the two: `other` at `position` here, this atom at 3 - position there. A position above
    /// 3 does nothing.
    void linkTo(SiAtom &other, unsigned position)
    {
        if (position >= Bonds)
            return;
        m_links[position] = &other;
        other.m_links[Bonds - 1 - position] = this;
    }

    /// 4 for a mask atom, else its bonds to atoms that are not removed.
    std::uint32_t bondCount() const;
    /// Sum over the bonds: of an active neighbour its bondCount() without the bond back, of a mask
    /// 3, of none and of a removed one 0.
    std::uint32_t secondNeighbourCount() const;
    /// Neighbours with fewer than four good bonds, and those with four; a mask counts as bulk. A
    /// neighbour that was removed stays counted.
    void firstNeighbourCounts(std::uint32_t &surface, std::uint32_t &bulk) const;
    /// The same over the neighbours' neighbours but this atom itself; removed ones count nothing.
    void secondNeighbourCounts(std::uint32_t &surface, std::uint32_t &bulk) const;
    /// A bond is missing or leads to a removed atom.
    bool isSurface() const;

private:
    /// Bonds to atoms that are not removed, also for a mask.
    std::uint32_t goodBonds() const;

    std::int32_t m_cellIndex = -1;
    std::uint32_t m_state;
    float m_mass = 0.0f;
    std::array<SiAtom *, Bonds> m_links{};
    SiCell *m_owner;
    Util::Vector3D m_position;
};

} // namespace Model::Automaton
