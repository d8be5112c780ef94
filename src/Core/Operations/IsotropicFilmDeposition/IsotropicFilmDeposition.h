#pragma once

#include "Core/Operations/CellularProcess/DistanceFront.h"

#include <cstdint>

namespace Model::Automaton {
class TotalVolume;
}

namespace Core::Operations {

/// Covers every solid surface of a volume with a film of the same thickness in all directions. What
/// decides whether a void cell is filled is its Euclidean distance to the nearest filled cell.
class IsotropicFilmDeposition final
{
public:
    /// `material` is the id of the film's material; `thickness` in drawing units: 0, negative or
    /// not a number deposits nothing. The volume is not owned; its cells are not touched yet.
    IsotropicFilmDeposition(Model::Automaton::TotalVolume *volume, std::uint32_t material,
                            float thickness);

    /// Runs to the end, on the global thread pool and the calling thread. Called once.
    void runDeposition();

private:
    void runPartialInitialization(std::int32_t start, std::int32_t end, std::uint32_t strip);
    void runPartialDepositionStep(std::int32_t start, std::int32_t end, std::uint32_t strip);

    std::uint32_t m_material;
    float m_thickness;
    DistanceFront m_front;
};

} // namespace Core::Operations
