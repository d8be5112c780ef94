#pragma once

#include <array>
#include <cmath>
#include <cstdint>

namespace Core::Operations {

/// A neighbour of a cell, as an offset in cells.
struct CellOffset
{
    std::int32_t dx;
    std::int32_t dy;
    std::int32_t dz;
};

/// The six neighbours across a face. Among equal candidates of a front the first in this order
/// stands.
constexpr std::array<CellOffset, 6> faceNeighbors = {
    {{0, 0, -1}, {0, 0, 1}, {0, -1, 0}, {0, 1, 0}, {-1, 0, 0}, {1, 0, 0}}};

/// Steps of a distance front per cell of distance: 1.7071067811865475.
const double stepFactor = (std::sqrt(2.0) + 1.0) / std::sqrt(2.0);

} // namespace Core::Operations
