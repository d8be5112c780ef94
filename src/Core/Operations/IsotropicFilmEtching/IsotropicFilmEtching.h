#pragma once

#include "Core/Operations/CellularProcess/DistanceFront.h"

#include <cstdint>

namespace Model::Automaton {
class TotalVolume;
}

namespace Core::Operations {

/// Removes one material to a given depth from every exposed surface. Other materials neither etch
/// nor carry the front.
class IsotropicFilmEtching final
{
public:
    /// `material` is the id of what is etched; `thickness` is the depth, in drawing units: 0,
    /// negative or not a number etches nothing. The volume is not owned; its cells are not touched
    /// yet.
    IsotropicFilmEtching(Model::Automaton::TotalVolume *volume, std::uint32_t material,
                         float thickness);

    /// Runs to the end, on the global thread pool and the calling thread. Called once.
    void runEtching();

private:
    void runPartialInitialization(std::int32_t start, std::int32_t end, std::uint32_t strip);
    void runPartialEtchingStep(std::int32_t start, std::int32_t end, std::uint32_t strip);

    Model::Automaton::TotalVolume *m_volume;
    std::uint32_t m_material;
    float m_thickness;
    DistanceFront m_front;
};

} // namespace Core::Operations
