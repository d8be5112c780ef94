#pragma once

#include "Core/Operations/MooreNeighborhood/MooreProcessOperation.h"

#include <cstdint>

namespace Core::Operations {

/// Deposits layers of the Moore neighbourhood on a cell volume.
class MooreNeighborhoodDepositionOperation final : public MooreProcessOperation
{
public:
    static constexpr std::uint32_t Id = 18;

    /// The workspace is not owned.
    explicit MooreNeighborhoodDepositionOperation(Workspace *workspace);

private:
    void run(Model::Automaton::TotalVolume *volume, std::uint32_t material,
             std::int32_t steps) override;
};

} // namespace Core::Operations
