#include "Core/Operations/MooreNeighborhood/MooreNeighborhoodEtchingOperation.h"

#include "Core/Operations/MooreNeighborhood/MooreNeighborhoodEtching.h"

namespace Core::Operations {

namespace {

std::uint32_t s_nextInstanceId = 0;

} // namespace

MooreNeighborhoodEtchingOperation::MooreNeighborhoodEtchingOperation(Workspace *workspace)
    : MooreProcessOperation(Id, s_nextInstanceId++, workspace)
{}

void MooreNeighborhoodEtchingOperation::run(Model::Automaton::TotalVolume *volume,
                                            std::uint32_t material, std::int32_t steps)
{
    MooreNeighborhoodEtching(volume, material, steps).runEtching();
}

} // namespace Core::Operations
