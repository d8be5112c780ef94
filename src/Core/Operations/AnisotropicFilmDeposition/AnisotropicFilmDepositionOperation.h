#pragma once

#include "Core/Operations/SteppedProcessOperation.h"

#include <cstdint>

namespace Core::Operations {

/// Deposits a film on the surfaces of a cell volume that face the source.
class AnisotropicFilmDepositionOperation final : public SteppedProcessOperation
{
public:
    /// That of isotropic deposition on purpose, as the name and the tag are: undo entries and
    /// records read so. It is not the number that the operation is started by.
    static constexpr std::uint32_t Id = 13;

    /// The workspace is not owned.
    explicit AnisotropicFilmDepositionOperation(Workspace *workspace);

    /// Drawing units.
    void setThickness(float thickness);
    void setMaterial(std::uint32_t material);
    /// How far the film grows sideways for each unit upward; above 0.
    void setHorizontalRatio(float ratio);
    /// Is kept but not used: from the menu the film is always deposited on top.
    void setDepositionMode(std::uint32_t mode);

    /// Runs the simulation, if at least one value was given; cancels otherwise.
    void end() override;

private:
    std::uint32_t m_material = 0;
    float m_thickness = 0.0f;
    float m_horizontalRatio = 0.0f;
    std::uint32_t m_depositionMode = 0;
};

} // namespace Core::Operations
