#pragma once

#include "Core/Operations/CellularProcess/LayerFront.h"

#include <cstdint>

namespace Model::Automaton {
class TotalVolume;
}

namespace Core::Operations {

/// Grows a film by whole layers of the Moore neighbourhood: after n steps every void cell within n
/// cells of a filled one along each axis, through void cells, holds the film. The size of a cell
/// plays no part.
class MooreNeighborhoodDeposition final
{
public:
    /// `material` is the id of the film's material; `steps` in cells: 0 or negative deposits
    /// nothing. The volume is not owned; its cells are not touched yet.
    MooreNeighborhoodDeposition(Model::Automaton::TotalVolume *volume, std::uint32_t material,
                                std::int32_t steps);

    /// Runs to the end, on the global thread pool and the calling thread. Called once.
    void runDeposition();

private:
    void runPartialInitialization(std::int32_t start, std::int32_t end, std::uint32_t strip);
    void runPartialDepositionStep(std::int32_t start, std::int32_t end, std::uint32_t strip);

    std::uint32_t m_material;
    std::int32_t m_steps;
    LayerFront m_front;
};

} // namespace Core::Operations
