#pragma once

#include "Core/Operations/UndoableProcessOperation.h"

#include <cstdint>

namespace Core::Operations {

/// Dopes a cell volume from its surfaces. Needs the volume, the depth and the material, in any
/// order.
class DopingOperation final : public UndoableProcessOperation
{
public:
    static constexpr std::uint32_t Id = 17;

    /// The workspace is not owned.
    explicit DopingOperation(Workspace *workspace);

    /// Drawing units.
    void setDepth(float depth);
    /// What the cells become.
    void setMaterial(std::uint32_t material);

    void next() override;
    /// Runs the simulation, if volume and values are there; cancels otherwise.
    void end() override;

private:
    std::uint32_t m_material = 0;
    float m_depth = 0.0f;
    bool m_materialSet = false;
    bool m_depthSet = false;
};

} // namespace Core::Operations
