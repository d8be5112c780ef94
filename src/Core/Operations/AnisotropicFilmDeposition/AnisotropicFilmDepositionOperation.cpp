#include "Core/Operations/AnisotropicFilmDeposition/AnisotropicFilmDepositionOperation.h"

#include "Core/Operations/AnisotropicFilmDeposition/AnisotropicFilmDeposition.h"
#include "Model/Automaton/Voxel.h"

namespace Core::Operations {

namespace {

constexpr std::uint32_t StepsNeeded = 3;

std::uint32_t s_nextInstanceId = 0;

/// With the name before it, the console shows the words twice; users know the line so.
constexpr ProcessMessages Messages{": Isotropic Deposition: Cell volume selected.",
                                   ": Operation canceled."};

} // namespace

AnisotropicFilmDepositionOperation::AnisotropicFilmDepositionOperation(Workspace *workspace)
    : SteppedProcessOperation("Isotropic Deposition", Id, "IsotropicDeposition", s_nextInstanceId++,
                              workspace, Messages)
{}

void AnisotropicFilmDepositionOperation::setThickness(float thickness)
{
    m_thickness = thickness;
    valueGiven();
}

void AnisotropicFilmDepositionOperation::setMaterial(std::uint32_t material)
{
    m_material = material;
    valueGiven();
}

void AnisotropicFilmDepositionOperation::setHorizontalRatio(float ratio)
{
    m_horizontalRatio = ratio;
    valueGiven();
}

void AnisotropicFilmDepositionOperation::setDepositionMode(std::uint32_t mode)
{
    m_depositionMode = mode;
    valueGiven();
}

void AnisotropicFilmDepositionOperation::end()
{
    if (step() < StepsNeeded || !volume()) {
        cancel();
        return;
    }
    states().saveState(*volume());
    AnisotropicFilmDeposition(volume(), m_material, m_thickness, m_horizontalRatio,
                              AnisotropicFilmDeposition::OnTop)
        .runDeposition();
    states().saveState(*volume());
    sequence().finish(m_material == Model::Automaton::Voxel::Silicon);
}

} // namespace Core::Operations
