#include "Core/Operations/SiEtching/AtomicStructureSimpleSiWetEtch.h"

#include "Model/Automaton/TotalVolume.h"

namespace Core::Operations {

using Model::Automaton::SiAtom;

namespace {

/// An atom of a (111) plane has three bonds, and with these or more bonds of its neighbours it
/// stays.
constexpr std::uint32_t BondsOnPlane111 = 3;
constexpr std::uint32_t SecondNeighboursOnPlane111 = 9;

bool isEtched(const SiAtom &atom)
{
    const std::uint32_t bonds = atom.bondCount();
    if (bonds >= SiAtom::Bonds)
        return false;
    return bonds < BondsOnPlane111 || atom.secondNeighbourCount() < SecondNeighboursOnPlane111;
}

} // namespace

AtomicStructureSimpleSiWetEtch::AtomicStructureSimpleSiWetEtch(
    Model::Automaton::TotalVolume *volume, double depth)
    : m_front(volume, depth)
{}

void AtomicStructureSimpleSiWetEtch::runEtching()
{
    m_front.run([this](std::uint32_t thread) { runPartialInitialization(thread); },
                [this](std::uint32_t thread) { runPartialEtchingStep(thread); });
}

void AtomicStructureSimpleSiWetEtch::runPartialInitialization(std::uint32_t thread)
{
    m_front.initializeStrip(thread, [](SiAtom &) {});
}

void AtomicStructureSimpleSiWetEtch::runPartialEtchingStep(std::uint32_t thread)
{
    m_front.stepStrip(thread, [](const SiAtom &atom, float &) { return isEtched(atom); });
}

} // namespace Core::Operations
