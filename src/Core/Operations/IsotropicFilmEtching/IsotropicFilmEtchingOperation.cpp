#include "Core/Operations/IsotropicFilmEtching/IsotropicFilmEtchingOperation.h"

#include "Core/Operations/IsotropicFilmEtching/IsotropicFilmEtching.h"
#include "Model/Automaton/Voxel.h"

namespace Core::Operations {

namespace {

constexpr std::uint32_t StepsNeeded = 3;

std::uint32_t s_nextInstanceId = 0;

} // namespace

IsotropicFilmEtchingOperation::IsotropicFilmEtchingOperation(Workspace *workspace)
    : SteppedProcessOperation("Isotropic Etching", Id, "IsotropicEtching", s_nextInstanceId++,
                              workspace)
{}

void IsotropicFilmEtchingOperation::setThickness(float thickness)
{
    m_thickness = thickness;
    valueGiven();
}

void IsotropicFilmEtchingOperation::setMaterial(std::uint32_t material)
{
    m_material = material;
    valueGiven();
}

void IsotropicFilmEtchingOperation::end()
{
    if (step() < StepsNeeded || !volume()) {
        cancel();
        return;
    }
    IsotropicFilmEtching(volume(), m_material, m_thickness).runEtching();
    sequence().finish(m_material == Model::Automaton::Voxel::Silicon);
}

} // namespace Core::Operations
