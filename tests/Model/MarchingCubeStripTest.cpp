#include "Model/Automaton/MarchingCubeStrip.h"

#include "Model/Automaton/MarchingCubeSurface.h"
#include "Model/Automaton/MarchingCubeTables.h"
#include "Model/Automaton/TotalVolume.h"
#include "Model/Automaton/Voxel.h"
#include "Support/Volumes.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <random>
#include <vector>

using Model::Automaton::CellTriple;
using Model::Automaton::CutLimits;
using Model::Automaton::MarchingCubeGrid;
using Model::Automaton::MarchingCubeStrip;
using Model::Automaton::MarchingCubeSurface;
using Model::Automaton::MarchingCubeTables;
using Model::Automaton::Triangle;
using Model::Automaton::VertexLattice;
using Model::Automaton::Voxel;

namespace {

using Triangles = std::vector<Triangle>;

/// A block of cells with its cut, and the rule for its triangles, corner by corner.
struct Block
{
    CellTriple sizes{};
    std::array<float, 3> cellSizes{1.0f, 1.0f, 1.0f};
    CutLimits limits;
    std::vector<Voxel> cells;

    std::uint32_t cornerMaterial(const CellTriple &corner) const
    {
        for (unsigned axis = 0; axis < 3; ++axis)
            if (corner[axis] <= limits.lower[axis] || corner[axis] > limits.upper[axis] ||
                corner[axis] >= sizes[axis])
                return 0;
        return cells[(std::size_t{corner[0]} * sizes[1] + corner[1]) * sizes[2] + corner[2]]
            .material();
    }

    std::uint32_t key(const float (&position)[3]) const
    {
        const auto rounded = [](float cell) {
            return static_cast<std::uint32_t>(
                static_cast<std::int64_t>(std::floor(static_cast<double>(cell) + 0.5)));
        };
        return (sizes[1] * rounded(position[0] / cellSizes[0]) +
                rounded(position[1] / cellSizes[1])) *
                   sizes[2] +
               rounded(position[2] / cellSizes[1]);
    }

    Triangles expectedTriangles(std::uint32_t firstX, std::uint32_t endX) const
    {
        Triangles triangles;
        for (std::uint32_t x = firstX; x < endX; ++x)
            for (std::uint32_t y = limits.lower[1]; y <= limits.upper[1] && y < sizes[1]; ++y)
                for (std::uint32_t z = limits.lower[2]; z <= limits.upper[2] && z < sizes[2]; ++z)
                    addCube(triangles, {x, y, z});
        return triangles;
    }

    void addCube(Triangles &triangles, const CellTriple &cube) const
    {
        std::uint32_t materials[8];
        float corners[8][3];
        unsigned number = 0;
        for (unsigned i = 0; i < 8; ++i) {
            CellTriple corner;
            for (unsigned axis = 0; axis < 3; ++axis) {
                corner[axis] = cube[axis] + MarchingCubeTables::corners[i][axis];
                corners[i][axis] = static_cast<float>(corner[axis]) * cellSizes[axis];
            }
            materials[i] = cornerMaterial(corner);
            if (materials[i] != 0)
                number |= 1u << i;
        }
        const auto &row = MarchingCubeTables::triangles[number];
        for (unsigned i = 0; row[i] >= 0; i += 3) {
            Triangle triangle{};
            for (unsigned j = 0; j < 3; ++j) {
                Triangle::Vertex &vertex = triangle.vertices[j];
                const auto &ends =
                    MarchingCubeTables::edgeCorners[static_cast<unsigned>(row[i + j])];
                for (unsigned axis = 0; axis < 3; ++axis)
                    vertex.position[axis] =
                        (corners[ends[0]][axis] + corners[ends[1]][axis]) * 0.5f;
                vertex.material = materials[ends[0]] != 0 ? materials[ends[0]] : materials[ends[1]];
                vertex.shared = key(vertex.position);
            }
            setNormal(triangle);
            triangles.push_back(triangle);
        }
    }

    static void setNormal(Triangle &triangle)
    {
        float first[3];
        float second[3];
        for (unsigned axis = 0; axis < 3; ++axis) {
            first[axis] = triangle.vertices[1].position[axis] - triangle.vertices[0].position[axis];
            second[axis] =
                triangle.vertices[2].position[axis] - triangle.vertices[0].position[axis];
        }
        float product[3];
        float squared = 0.0f;
        for (unsigned axis = 0; axis < 3; ++axis) {
            const unsigned j = (axis + 1) % 3;
            const unsigned k = (axis + 2) % 3;
            product[axis] = first[j] * second[k] - first[k] * second[j];
            squared += product[axis] * product[axis];
        }
        for (Triangle::Vertex &vertex : triangle.vertices)
            for (unsigned axis = 0; axis < 3; ++axis)
                vertex.normal[axis] = product[axis] / std::sqrt(squared);
    }

    Triangles triangles(std::uint32_t firstX, std::uint32_t endX) const
    {
        const VertexLattice lattice(sizes, cellSizes);
        const MarchingCubeGrid grid{cells.data(), sizes, limits, lattice};
        MarchingCubeStrip strip(grid, firstX, endX);
        strip.readCorners();
        Triangles result(strip.triangleCount());
        strip.writeTriangles(result.data());
        return result;
    }
};

void expectSame(const Triangles &actual, const Triangles &expected)
{
    ASSERT_EQ(actual.size(), expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i)
        ASSERT_EQ(std::memcmp(&actual[i], &expected[i], sizeof(Triangle)), 0) << "triangle " << i;
}

Block filledBlock(const CellTriple &sizes, std::uint32_t material)
{
    Block block;
    block.sizes = sizes;
    block.limits.upper = sizes;
    block.cells.assign(std::size_t{sizes[0]} * sizes[1] * sizes[2], Voxel(material));
    return block;
}

} // namespace

TEST(MarchingCubeStripTest, TrianglesFollowTheRuleToTheLastBit)
{
    constexpr unsigned Seed = 5150;
    SCOPED_TRACE(Seed);
    std::mt19937 random(Seed);
    const auto below = [&](std::uint32_t end) {
        return std::uniform_int_distribution<std::uint32_t>(0, end - 1)(random);
    };
    const std::array<std::array<float, 3>, 4> cellSizes = {
        {{1.0f, 1.0f, 1.0f}, {0.1f, 0.3f, 0.7f}, {2.5f, 0.01f, 1.0f}, {1.0f, 3.0f, 0.2f}}};
    std::size_t seen = 0;
    for (int round = 0; round < 120; ++round) {
        // Columns of more than one word of bits, too, and on both sides of its border.
        Block block = filledBlock({1 + below(7), 1 + below(7), 1 + below(round % 4 ? 8 : 140)}, 0);
        const std::uint32_t voidShare = 1 + below(5);
        for (Voxel &cell : block.cells)
            cell = Voxel(below(voidShare + 1) == 0 ? 1 + below(3) : 0);
        block.cellSizes = cellSizes[below(cellSizes.size())];
        if (round % 2 == 1)
            for (unsigned axis = 0; axis < 3; ++axis) {
                block.limits.lower[axis] = below(block.sizes[axis]);
                block.limits.upper[axis] = block.limits.lower[axis] + 1 +
                                           below(block.sizes[axis] - block.limits.lower[axis]);
            }
        const std::uint32_t first = below(block.sizes[0]);
        const std::uint32_t end = first + below(block.sizes[0] - first + 1);
        const Triangles all = block.expectedTriangles(0, block.sizes[0]);
        seen += all.size();
        expectSame(block.triangles(0, block.sizes[0]), all);
        expectSame(block.triangles(first, end), block.expectedTriangles(first, end));
        ASSERT_FALSE(HasFailure()) << "round " << round;
    }
    EXPECT_GT(seen, 1000u);
}

TEST(MarchingCubeStripTest, FullVolumeIsClosedOneCellInFromTheLowSides)
{
    const Block block = filledBlock({5, 6, 7}, 3);
    const Triangles triangles = block.triangles(0, 5);
    ASSERT_FALSE(triangles.empty());
    float lowest[3] = {100, 100, 100};
    float highest[3] = {};
    for (const Triangle &triangle : triangles)
        for (const Triangle::Vertex &vertex : triangle.vertices)
            for (unsigned axis = 0; axis < 3; ++axis) {
                lowest[axis] = std::min(lowest[axis], vertex.position[axis]);
                highest[axis] = std::max(highest[axis], vertex.position[axis]);
            }
    for (unsigned axis = 0; axis < 3; ++axis) {
        // Filled corners are 1 to size - 1.
        EXPECT_EQ(lowest[axis], 0.5f);
        EXPECT_EQ(highest[axis], static_cast<float>(block.sizes[axis]) - 0.5f);
    }
}

TEST(MarchingCubeStripTest, CellsAtTheUpperLimitAreFilledAndTheLidLiesHalfACellBehindThem)
{
    Block block = filledBlock({9, 9, 9}, 1);
    block.limits = {{2, 2, 2}, {5, 5, 5}};
    float highest = 0;
    for (const Triangle &triangle : block.triangles(2, 9))
        for (const Triangle::Vertex &vertex : triangle.vertices)
            highest = std::max(highest, vertex.position[2]);
    EXPECT_EQ(highest, 5.5f);
}

TEST(MarchingCubeStripTest, VolumesOneCellThickAndCutsWithoutInsideShowNothing)
{
    for (unsigned axis = 0; axis < 3; ++axis) {
        CellTriple sizes = {4, 4, 4};
        for (const std::uint32_t size : {1u, 0u}) {
            sizes[axis] = size;
            EXPECT_TRUE(filledBlock(sizes, 1).triangles(0, sizes[0]).empty());
        }
        Block block = filledBlock({4, 4, 4}, 1);
        for (const auto &limits : {std::array<std::uint32_t, 2>{3, 4}, {2, 2}, {3, 1}, {4, 4}}) {
            block.limits.lower[axis] = limits[0];
            block.limits.upper[axis] = limits[1];
            EXPECT_TRUE(block.triangles(0, 4).empty());
        }
    }
}

TEST(MarchingCubeStripTest, UpperLimitsBeyondTheVolumeAreItsSize)
{
    Block block = filledBlock({4, 4, 4}, 1);
    const Triangles expected = block.triangles(0, 4);
    block.limits.upper = {4294967295U, 4294967295U, 4294967295U};
    expectSame(block.triangles(0, 4294967295U), expected);
}

TEST(MarchingCubeStripTest, SurfaceOfManyStripsIsThatOfOne)
{
    std::mt19937 random(2112);
    const auto volume = Support::makeVolume({13, 9, 70, 0.1f, 0.3f, 0.7f}, [&](auto...) {
        return std::uniform_int_distribution<std::uint32_t>(0, 2)(random);
    });
    for (const CutLimits &limits :
         {CutLimits{{0, 0, 0}, {13, 9, 70}}, CutLimits{{4, 1, 3}, {11, 8, 69}}}) {
        Triangles single;
        for (const int threads : {1, 2, 3, 5, 20}) {
            SCOPED_TRACE(threads);
            const Support::PoolThreads pool(threads);
            MarchingCubeSurface surface(volume.get());
            surface.rebuild(limits.lower, limits.upper);
            const Triangles triangles(surface.triangles().begin(), surface.triangles().end());
            if (threads == 1)
                single = triangles;
            ASSERT_GT(triangles.size(), 1000u);
            expectSame(triangles, single);
        }
    }
}
