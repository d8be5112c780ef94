#include "Core/Operations/MooreNeighborhood/MooreNeighborhoodDepositionOperation.h"

#include "Core/Operations/MooreNeighborhood/MooreNeighborhoodDeposition.h"

namespace Core::Operations {

namespace {

std::uint32_t s_nextInstanceId = 0;

} // namespace

MooreNeighborhoodDepositionOperation::MooreNeighborhoodDepositionOperation(Workspace *workspace)
    : MooreProcessOperation(Id, s_nextInstanceId++, workspace)
{}

void MooreNeighborhoodDepositionOperation::run(Model::Automaton::TotalVolume *volume,
                                               std::uint32_t material, std::int32_t steps)
{
    MooreNeighborhoodDeposition(volume, material, steps).runDeposition();
}

} // namespace Core::Operations
