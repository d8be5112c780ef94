#pragma once

#include "Core/Operations/MooreNeighborhood/MooreProcessOperation.h"

#include <cstdint>

namespace Core::Operations {

/// Etches layers of the Moore neighbourhood off a cell volume.
class MooreNeighborhoodEtchingOperation final : public MooreProcessOperation
{
public:
    static constexpr std::uint32_t Id = 19;

    /// The workspace is not owned.
    explicit MooreNeighborhoodEtchingOperation(Workspace *workspace);

private:
    void run(Model::Automaton::TotalVolume *volume, std::uint32_t material,
             std::int32_t steps) override;
};

} // namespace Core::Operations
