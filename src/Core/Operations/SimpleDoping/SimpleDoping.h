#pragma once

#include "Core/Operations/CellularProcess/CompatibleMaterials.h"
#include "Core/Operations/CellularProcess/DistanceFront.h"

#include <cstdint>

namespace Model::Automaton {
class TotalVolume;
}

namespace Core::Operations {

/// Dopes from every free surface inward to a depth, as diffusion does. Materials that are not
/// compatible with the process "Simple Doping" are masks.
class SimpleDoping final
{
public:
    /// `material` is the id of what the cells become; `depth` in drawing units: 0, negative or not
    /// a number dopes nothing. The volume is not owned; its cells are not touched yet.
    SimpleDoping(Model::Automaton::TotalVolume *volume, std::uint32_t material, float depth);

    /// Runs to the end, on the global thread pool and the calling thread. Called once.
    void runDoping();

private:
    void runPartialInitialization(std::int32_t start, std::int32_t end, std::uint32_t strip);
    void runPartialDopingStep(std::int32_t start, std::int32_t end, std::uint32_t strip);

    std::uint32_t m_material;
    float m_depth;
    CompatibleMaterials m_compatibleSet;
    DistanceFront m_front;
};

} // namespace Core::Operations
