#pragma once

#include "Core/Operations/CellularProcess/LayerFront.h"

#include <cstdint>

namespace Model::Automaton {
class TotalVolume;
}

namespace Core::Operations {

/// Removes a film by whole layers of the Moore neighbourhood from every surface that it has towards
/// void, never through other materials. The size of a cell plays no part.
class MooreNeighborhoodEtching final
{
public:
    /// `material` is the id of the film's material; `steps` in cells: 0 or negative etches nothing.
    /// The volume is not owned; its cells are not touched yet.
    MooreNeighborhoodEtching(Model::Automaton::TotalVolume *volume, std::uint32_t material,
                             std::int32_t steps);

    /// Runs to the end, on the global thread pool and the calling thread. Called once.
    void runEtching();

private:
    void runPartialInitialization(std::int32_t start, std::int32_t end, std::uint32_t strip);
    void runPartialEtchingStep(std::int32_t start, std::int32_t end, std::uint32_t strip);

    std::uint32_t m_material;
    std::int32_t m_steps;
    LayerFront m_front;
};

} // namespace Core::Operations
