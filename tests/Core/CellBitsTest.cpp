#include "Core/Operations/CellularProcess/CellBits.h"
#include "Core/Operations/CellularProcess/CellRuns.h"

#include "Support/Volumes.h"

#include "Model/Automaton/TotalVolume.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <random>
#include <vector>

namespace {

using Core::Operations::CellBits;
using Core::Operations::FrontWord;
using Core::Operations::FrontWordBits;
using Support::Grid;

bool bitOf(const std::vector<bool> &bits, const Grid &grid, int x, int y, int z)
{
    const bool inside = x >= 0 && y >= 0 && z >= 0 && x < int(grid.sizeX) && y < int(grid.sizeY) &&
                        z < int(grid.sizeZ);
    return inside && bits[grid.index(std::uint32_t(x), std::uint32_t(y), std::uint32_t(z))];
}

/// Around the borders of words, and with sizes of 1.
const Grid Grids[] = {{1, 1, 1}, {3, 4, 63}, {3, 4, 64}, {4, 3, 65}, {2, 5, 130}, {1, 9, 70}};

TEST(CellBitsTest, TouchedCellsAreThoseWithANeighborAcrossAFace)
{
    const unsigned seed = std::random_device{}();
    SCOPED_TRACE(seed);
    std::mt19937 random(seed);
    for (const Grid &grid : Grids) {
        CellBits cells(grid.sizeX, grid.sizeY, grid.sizeZ);
        std::vector<bool> bits(grid.cells());
        for (std::uint32_t x = 0; x < grid.sizeX; ++x)
            for (std::uint32_t y = 0; y < grid.sizeY; ++y)
                for (std::uint32_t z = 0; z < grid.sizeZ; ++z)
                    if (random() % 5 == 0) {
                        bits[grid.index(x, y, z)] = true;
                        const std::uint32_t word = z / FrontWordBits;
                        cells.set(x, y, word,
                                  cells.at(x, y, word) | FrontWord{1} << z % FrontWordBits);
                    }
        for (int x = 0; x < int(grid.sizeX); ++x)
            for (int y = 0; y < int(grid.sizeY); ++y)
                for (int z = 0; z < int(grid.sizeZ); ++z) {
                    const bool expected =
                        bitOf(bits, grid, x - 1, y, z) || bitOf(bits, grid, x + 1, y, z) ||
                        bitOf(bits, grid, x, y - 1, z) || bitOf(bits, grid, x, y + 1, z) ||
                        bitOf(bits, grid, x, y, z - 1) || bitOf(bits, grid, x, y, z + 1);
                    const FrontWord touched = cells.touched(std::uint32_t(x), std::uint32_t(y),
                                                            std::uint32_t(z) / FrontWordBits);
                    EXPECT_EQ((touched >> z % int(FrontWordBits) & 1) != 0, expected)
                        << x << ' ' << y << ' ' << z << " of " << grid.sizeZ;
                }
    }
}

TEST(CellBitsTest, CellsOfAColumnAreThoseThatPassTheTest)
{
    for (const Grid &grid : Grids) {
        const auto volume = Support::makeVolume(
            grid, [](auto x, auto y, auto z) { return (x + 2 * y + z / 3) % 4; });
        const Model::Automaton::Voxel *voxels = volume->voxels();
        const auto *column = voxels + grid.index(grid.sizeX - 1, grid.sizeY - 1, 0);
        for (std::uint32_t z = 0; z < grid.sizeZ; ++z) {
            const FrontWord cells =
                Core::Operations::cellsOf(column, grid.sizeZ, z / FrontWordBits,
                                          [](std::uint32_t material) { return material == 2; });
            EXPECT_EQ((cells >> z % FrontWordBits & 1) != 0, column[z].material() == 2) << z;
            if (z + 1 == grid.sizeZ && grid.sizeZ % FrontWordBits != 0) {
                EXPECT_EQ(cells >> grid.sizeZ % FrontWordBits, 0u) << "cells beyond the column";
            }
        }
        volume->releaseVoxels();
    }
}

} // namespace
