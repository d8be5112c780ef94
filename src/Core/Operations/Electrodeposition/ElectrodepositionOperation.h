#pragma once

#include "Core/Operations/SteppedProcessOperation.h"

#include <cstdint>

namespace Core::Operations {

/// Plates a metal on the surfaces of a conducting material of a cell volume.
class ElectrodepositionOperation final : public SteppedProcessOperation
{
public:
    static constexpr std::uint32_t Id = 15;

    /// The workspace is not owned.
    explicit ElectrodepositionOperation(Workspace *workspace);

    /// Drawing units.
    void setThickness(float thickness);
    void setMaterial(std::uint32_t material);
    void setConductingMaterial(std::uint32_t material);

    /// Runs the simulation, if at least two values were given; cancels otherwise.
    void end() override;

private:
    std::uint32_t m_material = 0;
    std::uint32_t m_conductingMaterial = 0;
    float m_thickness = 0.0f;
};

} // namespace Core::Operations
