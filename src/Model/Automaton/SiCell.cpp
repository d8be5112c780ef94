#include "Model/Automaton/SiCell.h"

#include "Model/Automaton/LatticeRotation.h"

namespace Model::Automaton {

namespace {

struct InnerBond
{
    unsigned from;
    unsigned to;
    unsigned position;
};

constexpr InnerBond InnerBonds[] = {{0, 2, 3}, {1, 2, 2}, {1, 3, 3}, {2, 4, 2},
                                    {2, 5, 3}, {4, 6, 3}, {5, 7, 3}};

std::array<Util::Vector3D, SiCell::Atoms> placesIn(const Util::Vector3D &cell)
{
    std::array<Util::Vector3D, SiCell::Atoms> places;
    for (unsigned rank = 0; rank < SiCell::Atoms; ++rank) {
        const std::array<double, 3> &place = SiCell::basis()[rank];
        places[rank] = Util::Vector3D(cell[0] + place[0], cell[1] + place[1], cell[2] + place[2]);
    }
    return places;
}

} // namespace

const std::array<std::array<double, 3>, SiCell::Atoms> &SiCell::basis()
{
    static constexpr std::array<std::array<double, 3>, Atoms> Places = {{{0.0, 0.0, 0.0},
                                                                         {0.5, 0.5, 0.0},
                                                                         {0.25, 0.25, 0.25},
                                                                         {0.75, 0.75, 0.25},
                                                                         {0.5, 0.0, 0.5},
                                                                         {0.0, 0.5, 0.5},
                                                                         {0.75, 0.25, 0.75},
                                                                         {0.25, 0.75, 0.75}}};
    return Places;
}

SiCell::SiCell(const Util::Vector3D &position) : SiCell(position, placesIn(position)) {}

SiCell::SiCell(const Util::Vector3D &position, const std::array<Util::Vector3D, Atoms> &places)
    : m_atoms{SiAtom(places[0], this), SiAtom(places[1], this), SiAtom(places[2], this),
              SiAtom(places[3], this), SiAtom(places[4], this), SiAtom(places[5], this),
              SiAtom(places[6], this), SiAtom(places[7], this)},
      m_position(position)
{
    for (const InnerBond &bond : InnerBonds)
        m_atoms[bond.from].linkTo(m_atoms[bond.to], bond.position);
}

std::array<boost::shared_ptr<SiAtom>, SiCell::Atoms> SiCell::atoms()
{
    const boost::shared_ptr<SiCell> self = shared_from_this();
    std::array<boost::shared_ptr<SiAtom>, Atoms> result;
    for (unsigned rank = 0; rank < Atoms; ++rank)
        result[rank] = boost::shared_ptr<SiAtom>(self, &m_atoms[rank]);
    return result;
}

std::uint32_t SiCell::rankOf(const SiAtom &atom) const
{
    for (std::uint32_t rank = 0; rank < Atoms; ++rank)
        if (&m_atoms[rank] == &atom)
            return rank;
    return NoRank;
}

void SiCell::rotate(double aboutX, double aboutY, double aboutZ)
{
    const LatticeRotation rotation(aboutX, aboutY, aboutZ);
    m_position = rotation.apply(m_position);
    for (SiAtom &atom : m_atoms)
        atom.setPosition(rotation.apply(atom.position()));
}

void SiCell::translate(const Util::Vector3D &offset)
{
    m_position += offset;
    for (SiAtom &atom : m_atoms)
        atom.setPosition(atom.position() + offset);
}

} // namespace Model::Automaton
