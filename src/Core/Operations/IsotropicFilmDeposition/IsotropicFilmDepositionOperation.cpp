#include "Core/Operations/IsotropicFilmDeposition/IsotropicFilmDepositionOperation.h"

#include "Core/Operations/IsotropicFilmDeposition/IsotropicFilmDeposition.h"
#include "Model/Automaton/Voxel.h"

namespace Core::Operations {

namespace {

constexpr std::uint32_t StepsNeeded = 3;

std::uint32_t s_nextInstanceId = 0;

} // namespace

IsotropicFilmDepositionOperation::IsotropicFilmDepositionOperation(Workspace *workspace)
    : SteppedProcessOperation("Isotropic Deposition", Id, "IsotropicDeposition", s_nextInstanceId++,
                              workspace)
{}

void IsotropicFilmDepositionOperation::setThickness(float thickness)
{
    m_thickness = thickness;
    valueGiven();
}

void IsotropicFilmDepositionOperation::setMaterial(std::uint32_t material)
{
    m_material = material;
    valueGiven();
}

void IsotropicFilmDepositionOperation::end()
{
    if (step() < StepsNeeded || !volume()) {
        cancel();
        return;
    }
    IsotropicFilmDeposition(volume(), m_material, m_thickness).runDeposition();
    sequence().finish(m_material == Model::Automaton::Voxel::Silicon);
}

} // namespace Core::Operations
