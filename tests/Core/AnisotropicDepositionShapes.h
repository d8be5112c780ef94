#pragma once

#include "AnisotropicDepositionRule.h"
#include "AnisotropicDepositionRuns.h"

#include "Core/Operations/AnisotropicFilmDeposition/AnisotropicFilmDeposition.h"
#include "Support/Volumes.h"

#include <cstdint>

/// Volumes that tests of more than one kind deposit on.
namespace AnisotropicDepositionRule {

inline constexpr std::uint32_t film = 7;
inline constexpr std::uint32_t solid = 2;

inline constexpr std::uint32_t onTop = Core::Operations::AnisotropicFilmDeposition::OnTop;
inline constexpr std::uint32_t onBottom = Core::Operations::AnisotropicFilmDeposition::OnBottom;
inline constexpr std::uint32_t onBoth = Core::Operations::AnisotropicFilmDeposition::OnTopAndBottom;

inline Case caseOf(const Support::Grid &grid, float thickness, float ratio, std::uint32_t mode,
                   const Support::MaterialRule &rule)
{
    return {grid, Support::materialsBy(grid, rule), {film, thickness, ratio, mode}};
}

/// Layers [from, to) of z from side to side.
inline Case sheet(const Support::Grid &grid, float thickness, std::uint32_t mode, int from, int to)
{
    return caseOf(grid, thickness, 0.5f, mode,
                  [=](int, int, int z) { return z >= from && z < to ? solid : 0U; });
}

inline Case flatFloor(const Support::Grid &grid, float thickness, float ratio, int floorLayers)
{
    return caseOf(grid, thickness, ratio, onTop,
                  [=](int, int, int z) { return z < floorLayers ? solid : 0U; });
}

inline Case loneCell(const Support::Grid &grid, float thickness, float ratio, std::uint32_t mode,
                     const Place &source)
{
    return caseOf(grid, thickness, ratio, mode, [source](int x, int y, int z) {
        return x == source.x && y == source.y && z == source.z ? solid : 0U;
    });
}

/// A trench along y, eleven cells wide and fourteen deep, with vertical walls.
inline constexpr int leftWall = 4;
inline constexpr int rightWall = 16;
inline constexpr int wallTop = 15;
inline constexpr int trenchFloor = 1;

inline Case trench(float thickness, float ratio, std::uint32_t mode = onTop)
{
    return caseOf({21, 3, 28}, thickness, ratio, mode, [](int x, int, int z) {
        const int top = x <= leftWall || x >= rightWall ? wallTop : trenchFloor;
        return z <= top ? solid : 0U;
    });
}

/// A floor, a table with a roof that hangs over, and cells in the top layer.
inline Support::MaterialRule device()
{
    return [](int x, int y, int z) {
        const bool foot = x >= 4 && x < 6 && y >= 3 && y < 6 && z < 6;
        const bool roof = x >= 2 && x < 9 && y >= 1 && y < 7 && (z == 6 || z == 7);
        const bool lid = z == 11 && x > 7;
        return z < 2 || lid ? solid : foot || roof ? 3U : 0U;
    };
}
inline constexpr Support::Grid deviceGrid = {12, 8, 12};

} // namespace AnisotropicDepositionRule
