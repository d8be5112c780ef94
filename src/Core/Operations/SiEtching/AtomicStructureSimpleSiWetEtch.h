#pragma once

#include "Core/Operations/SiEtching/CrystalFront.h"

#include <cstdint>

namespace Model::Automaton {
class TotalVolume;
}

namespace Core::Operations {

/// Etches the silicon crystal of a volume by counting bonds: each step takes every surface atom
/// that a (100) plane would lose and spares the atoms of (111) planes. Other materials and the
/// sides of the volume hold the atoms next to them. A cell whose last atom has gone becomes empty.
/// No random numbers and no rates.
///
/// The result does not depend on where the atoms lie in memory; on the number of threads only in
/// volumes whose columns are not those of the world, which are away from x = 0 or have cells whose
/// width is not 1: there atoms are handed to neighbouring strips by their place in the world.
class AtomicStructureSimpleSiWetEtch final
{
public:
    /// `depth` in units of the crystal, a quarter of which is one step; the nearest number of
    /// steps, halves up. Negative and not a number: none. The volume is not owned; its lattice has
    /// to be the one to etch when the run begins. Without one the run does nothing.
    AtomicStructureSimpleSiWetEtch(Model::Automaton::TotalVolume *volume, double depth);

    /// Runs to the end, on the global thread pool and the calling thread. Called once. Atoms that
    /// went stay in the lattice as removed, mask atoms stay in its list for the pictures until the
    /// next run.
    void runEtching();

private:
    void runPartialInitialization(std::uint32_t thread);
    void runPartialEtchingStep(std::uint32_t thread);

    CrystalFront m_front;
};

} // namespace Core::Operations
