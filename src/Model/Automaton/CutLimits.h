#pragma once

#include <array>
#include <cstdint>

namespace Model::Automaton {

/// Three cell numbers or counts, in the order x, y, z.
using CellTriple = std::array<std::uint32_t, 3>;

/// The box of cells that is drawn: lower inclusive, upper exclusive.
struct CutLimits
{
    CellTriple lower{};
    CellTriple upper{};
};

} // namespace Model::Automaton
