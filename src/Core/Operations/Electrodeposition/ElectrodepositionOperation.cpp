#include "Core/Operations/Electrodeposition/ElectrodepositionOperation.h"

#include "Core/Operations/Electrodeposition/Electrodeposition.h"

namespace Core::Operations {

namespace {

constexpr std::uint32_t StepsNeeded = 4;

std::uint32_t s_nextInstanceId = 0;

} // namespace

ElectrodepositionOperation::ElectrodepositionOperation(Workspace *workspace)
    : SteppedProcessOperation("Electroplating", Id, "Electroplating", s_nextInstanceId++, workspace)
{}

void ElectrodepositionOperation::setThickness(float thickness)
{
    m_thickness = thickness;
    valueGiven();
}

void ElectrodepositionOperation::setMaterial(std::uint32_t material)
{
    m_material = material;
    valueGiven();
}

void ElectrodepositionOperation::setConductingMaterial(std::uint32_t material)
{
    m_conductingMaterial = material;
    valueGiven();
}

void ElectrodepositionOperation::end()
{
    if (step() < StepsNeeded || !volume()) {
        cancel();
        return;
    }
    states().saveState(*volume());
    Electrodeposition(volume(), m_material, m_conductingMaterial, m_thickness).runDeposition();
    states().saveState(*volume());
    // The silicon is as it was: its lattice still fits.
    sequence().finish(false);
}

} // namespace Core::Operations
