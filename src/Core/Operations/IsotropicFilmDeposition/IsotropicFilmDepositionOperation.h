#pragma once

#include "Core/Operations/SteppedProcessOperation.h"

#include <cstdint>

namespace Core::Operations {

/// Deposits a film of even thickness on a cell volume.
class IsotropicFilmDepositionOperation final : public SteppedProcessOperation
{
public:
    static constexpr std::uint32_t Id = 13;

    /// The workspace is not owned.
    explicit IsotropicFilmDepositionOperation(Workspace *workspace);

    /// Drawing units.
    void setThickness(float thickness);
    void setMaterial(std::uint32_t material);

    /// Runs the simulation, if both values were given; cancels otherwise.
    void end() override;

private:
    std::uint32_t m_material = 0;
    float m_thickness = 0.0f;
};

} // namespace Core::Operations
