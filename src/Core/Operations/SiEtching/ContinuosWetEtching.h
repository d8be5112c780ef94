#pragma once

#include "Core/Operations/SiEtching/AtomicConfiguration.h"
#include "Core/Operations/SiEtching/CrystalFront.h"

#include <array>
#include <cstdint>

namespace Model::Automaton {
class TotalVolume;
}

namespace Core::Operations {

/// Etches the silicon crystal of a volume as a continuous automaton: every surface atom has a mass,
/// 1 when a run begins, that falls in each step of 0.1 by the rate of the atom's configuration. The
/// atom goes when its mass is used up. All else is as in AtomicStructureSimpleSiWetEtch.
///
/// An atom takes part as long as one of its four bonds was never made: bonds to removed atoms
/// count. So a run acts on the surface that the lattice had when it began.
class ContinuosWetEtching final
{
public:
    /// As for AtomicStructureSimpleSiWetEtch.
    ContinuosWetEtching(Model::Automaton::TotalVolume *volume, double depth);

    /// Runs to the end, on the global thread pool and the calling thread. Called once.
    void runEtching();

    /// The configuration with these surface and bulk first neighbours and surface and bulk second
    /// neighbours. Any that the table does not hold is logged and gives Unexpected.
    AtomicConfiguration getAtomicConfiguration(unsigned ns1, unsigned nb1, unsigned ns2,
                                               unsigned nb2) const;
    /// Mass that an atom loses in a unit of time; 0 for the unexpected configuration, so that such
    /// an atom stays.
    double rate(AtomicConfiguration configuration) const { return m_rates[configuration]; }

private:
    void runPartialInitialization(std::uint32_t thread);
    void runPartialEtchingStep(std::uint32_t thread);

    CrystalFront m_front;
    double m_timeStep = 0.1;
    /// By configuration.
    std::array<double, AtomicConfigurations + 1> m_rates;
};

} // namespace Core::Operations
