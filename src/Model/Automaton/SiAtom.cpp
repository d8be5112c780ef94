#include "Model/Automaton/SiAtom.h"

namespace Model::Automaton {

std::uint32_t SiAtom::goodBonds() const
{
    std::uint32_t count = 0;
    for (const SiAtom *neighbour : m_links)
        count += neighbour && neighbour->m_state != Removed ? 1 : 0;
    return count;
}

std::uint32_t SiAtom::bondCount() const
{
    return m_state == Mask ? Bonds : goodBonds();
}

std::uint32_t SiAtom::secondNeighbourCount() const
{
    std::uint32_t sum = 0;
    for (const SiAtom *neighbour : m_links) {
        if (!neighbour || neighbour->m_state == Removed)
            continue;
        sum += neighbour->m_state == Mask ? 3 : neighbour->bondCount() - 1;
    }
    return sum;
}

void SiAtom::firstNeighbourCounts(std::uint32_t &surface, std::uint32_t &bulk) const
{
    surface = 0;
    bulk = 0;
    for (const SiAtom *neighbour : m_links) {
        if (!neighbour)
            continue;
        const bool isBulk = neighbour->m_state == Mask || neighbour->goodBonds() == Bonds;
        ++(isBulk ? bulk : surface);
    }
}

void SiAtom::secondNeighbourCounts(std::uint32_t &surface, std::uint32_t &bulk) const
{
    surface = 0;
    bulk = 0;
    for (unsigned i = 0; i < Bonds; ++i) {
        if (!m_links[i])
            continue;
        for (unsigned j = 0; j < Bonds; ++j) {
            const SiAtom *second = m_links[i]->m_links[j];
            if (j == Bonds - 1 - i || !second || second->m_state == Removed)
                continue;
            const bool isBulk = second->m_state == Mask || second->goodBonds() == Bonds;
            ++(isBulk ? bulk : surface);
        }
    }
}

bool SiAtom::isSurface() const
{
    return goodBonds() < Bonds;
}

} // namespace Model::Automaton
