#pragma once

#include "Core/Operations/UndoableProcessOperation.h"

#include <cstdint>

namespace Core::Operations {

/// A process on a cell volume whose film has the shape of the surface moved by whole layers of the
/// Moore neighbourhood: a material and a number of layers. Needs the volume and both values, in any
/// order.
class MooreProcessOperation : public UndoableProcessOperation
{
public:
    ~MooreProcessOperation() override;

    void setMaterial(std::uint32_t material);
    /// Cells.
    void setSteps(std::int32_t steps);

    void next() override;
    /// Runs the simulation, if volume and values are there; cancels otherwise.
    void end() override;

protected:
    MooreProcessOperation(std::uint32_t id, std::uint32_t instanceId, Workspace *workspace);

    /// Changes the cells.
    virtual void run(Model::Automaton::TotalVolume *volume, std::uint32_t material,
                     std::int32_t steps) = 0;

private:
    std::uint32_t m_material = 0;
    std::int32_t m_steps = 0;
    bool m_materialSet = false;
    bool m_stepsSet = false;
};

} // namespace Core::Operations
