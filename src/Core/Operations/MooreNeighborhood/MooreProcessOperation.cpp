#include "Core/Operations/MooreNeighborhood/MooreProcessOperation.h"

#include "Model/Automaton/Voxel.h"

namespace Core::Operations {

// Deposition and etching go by the same name and tag on purpose: the Undo entry of an etching reads
// "Moore film deposition", as it always has.
MooreProcessOperation::MooreProcessOperation(std::uint32_t id, std::uint32_t instanceId,
                                             Workspace *workspace)
    : UndoableProcessOperation("Moore film deposition", id, "MooreFilmDep", instanceId, workspace)
{}

MooreProcessOperation::~MooreProcessOperation() = default;

void MooreProcessOperation::setMaterial(std::uint32_t material)
{
    m_material = material;
    m_materialSet = true;
}

void MooreProcessOperation::setSteps(std::int32_t steps)
{
    m_steps = steps;
    m_stepsSet = true;
}

void MooreProcessOperation::next()
{
    sequence().selectThenAsk(observer());
}

void MooreProcessOperation::end()
{
    if (!volume() || !m_materialSet || !m_stepsSet) {
        cancel();
        return;
    }
    run(volume(), m_material, m_steps);
    sequence().finish(m_material == Model::Automaton::Voxel::Silicon);
}

} // namespace Core::Operations
