#pragma once

#include "Support/Volumes.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <vector>

/// The rule of film extraction, stated plainly: a queue of cells and a bit for each.
namespace FilmExtractionRule {

using Materials = std::vector<std::uint32_t>;

inline Materials extracted(const Support::Grid &grid, const Materials &materials,
                           std::uint32_t film, bool invert)
{
    const std::size_t count = grid.cells();
    Materials ids(count, 0);
    std::vector<bool> unvisited(count, true);
    std::deque<std::size_t> queue;
    for (std::size_t i = 0; i < count && queue.empty(); ++i)
        if (materials[i] == film)
            queue.push_back(i);
    if (queue.empty())
        return ids;

    std::uint32_t lowest = grid.sizeZ;
    std::uint32_t highest = 0;
    while (!queue.empty()) {
        const std::size_t i = queue.front();
        queue.pop_front();
        if (!unvisited[i] || materials[i] != film)
            continue;
        unvisited[i] = false;
        const auto x = std::uint32_t(i / (std::size_t{grid.sizeY} * grid.sizeZ));
        const auto y = std::uint32_t(i / grid.sizeZ % grid.sizeY);
        const auto z = std::uint32_t(i % grid.sizeZ);
        const std::uint32_t toY = invert ? grid.sizeY - 1 - y : y;
        const std::uint32_t toZ = invert ? grid.sizeZ - 1 - z : z;
        ids[grid.index(x, toY, toZ)] = film;
        lowest = std::min(lowest, toZ);
        highest = std::max(highest, toZ);
        if (x > 0)
            queue.push_back(grid.index(x - 1, y, z));
        if (x + 1 < grid.sizeX)
            queue.push_back(grid.index(x + 1, y, z));
        if (y > 0)
            queue.push_back(grid.index(x, y - 1, z));
        if (y + 1 < grid.sizeY)
            queue.push_back(grid.index(x, y + 1, z));
        if (z > 0)
            queue.push_back(grid.index(x, y, z - 1));
        if (z + 1 < grid.sizeZ)
            queue.push_back(grid.index(x, y, z + 1));
    }

    if (lowest > 0)
        for (std::uint32_t x = 0; x < grid.sizeX; ++x)
            for (std::uint32_t y = 0; y < grid.sizeY; ++y)
                for (std::uint32_t z = lowest; z <= highest; ++z) {
                    ids[grid.index(x, y, z - lowest)] = ids[grid.index(x, y, z)];
                    ids[grid.index(x, y, z)] = 0;
                }
    return ids;
}

} // namespace FilmExtractionRule
