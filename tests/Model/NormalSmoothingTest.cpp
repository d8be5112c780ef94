#include "Model/Automaton/NormalSmoothing.h"

#include "Model/Automaton/VertexLattice.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <map>
#include <random>
#include <vector>

using Model::Automaton::smoothNormals;
using Model::Automaton::Triangle;
using Model::Automaton::TriangleList;
using Model::Automaton::VertexLattice;

namespace {

/// The rule, with an ordered map.
void smoothByMap(TriangleList &triangles)
{
    struct Record
    {
        std::array<float, 3> sum;
        unsigned count;
    };
    std::map<std::uint32_t, Record> records;
    for (const Triangle &triangle : triangles)
        for (const Triangle::Vertex &vertex : triangle.vertices) {
            const float *normal = vertex.normal;
            const auto found = records.find(vertex.shared);
            if (found == records.end()) {
                records[vertex.shared] = {{normal[0], normal[1], normal[2]}, 0};
                continue;
            }
            for (unsigned axis = 0; axis < 3; ++axis)
                found->second.sum[axis] += normal[axis];
            ++found->second.count;
        }
    for (auto &entry : records) {
        auto &[sum, count] = entry.second;
        float squared = 0;
        for (float &component : sum) {
            component /= static_cast<float>(count);
            squared += component * component;
        }
        for (float &component : sum)
            component /= squared;
    }
    for (Triangle &triangle : triangles)
        for (Triangle::Vertex &vertex : triangle.vertices) {
            const auto &sum = records[vertex.shared].sum;
            std::copy(sum.begin(), sum.end(), vertex.normal);
            vertex.shared = 0;
        }
}

void fill(TriangleList &triangles, const std::vector<std::uint32_t> &keys, unsigned seed)
{
    std::mt19937 random(seed);
    std::uniform_real_distribution<float> component(-1.0f, 1.0f);
    triangles.reset(keys.size() / 3);
    for (std::size_t i = 0; i < triangles.size(); ++i)
        for (unsigned j = 0; j < 3; ++j)
            triangles[i].vertices[j] = {{float(i), float(j), 0.0f},
                                        {component(random), component(random), component(random)},
                                        1,
                                        keys[3 * i + j]};
}

void expectSmoothedByRule(const std::vector<std::uint32_t> &keys, std::size_t keyRange)
{
    TriangleList expected;
    fill(expected, keys, 7);
    smoothByMap(expected);
    TriangleList actual;
    fill(actual, keys, 7);
    smoothNormals(actual, keyRange);
    for (std::size_t i = 0; i < expected.size(); ++i)
        for (unsigned j = 0; j < 3; ++j) {
            const Triangle::Vertex &vertex = actual[i].vertices[j];
            const Triangle::Vertex &rule = expected[i].vertices[j];
            EXPECT_EQ(vertex.shared, 0u);
            EXPECT_EQ(vertex.position[0], float(i));
            // No number is as good as any other.
            for (unsigned axis = 0; axis < 3; ++axis)
                ASSERT_TRUE(vertex.normal[axis] == rule.normal[axis] ||
                            (std::isnan(vertex.normal[axis]) && std::isnan(rule.normal[axis])))
                    << "triangle " << i << " vertex " << j;
        }
}

/// Keys of a window that moves up with each plane.
std::vector<std::uint32_t> movingKeys(std::uint32_t range, std::uint32_t step, unsigned planes)
{
    std::mt19937 random(11);
    std::vector<std::uint32_t> keys;
    for (unsigned plane = 0; plane < planes; ++plane)
        for (unsigned i = 0; i < 90; ++i)
            keys.push_back(plane * step +
                           std::uniform_int_distribution<std::uint32_t>(0, range - 1)(random));
    return keys;
}

} // namespace

TEST(NormalSmoothingTest, GroupsAreThoseOfTheKeyInEveryOrderOfKeys)
{
    expectSmoothedByRule(movingKeys(40, 20, 60), 40);
    expectSmoothedByRule(movingKeys(64, 1, 60), 64);
    expectSmoothedByRule(movingKeys(33, 33, 60), 33);
    expectSmoothedByRule(movingKeys(1000, 400, 60), 1000);
    expectSmoothedByRule(movingKeys(40, 20, 60), 0);
    // A range too wide for a window.
    expectSmoothedByRule(movingKeys(40, 20, 60), std::size_t{1} << 40);
}

TEST(NormalSmoothingTest, CountIsOneShortAndTheSquareDivides)
{
    TriangleList triangles;
    triangles.reset(1);
    triangles[0].vertices[0] = {{}, {1.0f, 0.0f, 0.0f}, 1, 8};
    triangles[0].vertices[1] = {{}, {0.0f, 2.0f, 0.0f}, 1, 8};
    triangles[0].vertices[2] = {{}, {0.0f, 0.0f, 1.0f}, 1, 9};
    smoothNormals(triangles, 0);
    for (unsigned i = 0; i < 2; ++i) {
        // (1, 2, 0) / 1 over 5.
        EXPECT_EQ(triangles[0].vertices[i].normal[0], 0.2f);
        EXPECT_EQ(triangles[0].vertices[i].normal[1], 0.4f);
        EXPECT_EQ(triangles[0].vertices[i].normal[2], 0.0f);
    }
    for (const float component : triangles[0].vertices[2].normal)
        EXPECT_FALSE(std::isfinite(component));
}

TEST(NormalSmoothingTest, NothingToSmoothIsNoTrouble)
{
    TriangleList triangles;
    smoothNormals(triangles, 0);
    smoothNormals(triangles, 100);
    EXPECT_TRUE(triangles.empty());
}

TEST(NormalSmoothingTest, KeysOfTheLatticeStayInTheRangeOfTheirPlane)
{
    for (const std::array<float, 3> &cellSizes : {std::array<float, 3>{1.0f, 1.0f, 1.0f},
                                                  {0.1f, 0.3f, 0.7f},
                                                  {1.0f, 0.05f, 2.0f},
                                                  {3.0f, 2.0f, 0.1f}}) {
        const VertexLattice lattice({6, 5, 7}, cellSizes);
        ASSERT_GT(lattice.keyRange(), 0u);
        std::uint32_t lowest = 0;
        for (unsigned x = 0; x < 6; ++x) {
            // All keys of cubes at x, and of those behind them the lowest.
            std::uint32_t low = 0xffffffff;
            std::uint32_t high = 0;
            for (unsigned i = 2 * x; i <= 2 * x + 2; ++i)
                for (unsigned j = 0; j <= 10; ++j)
                    for (unsigned k = 0; k <= 14; ++k) {
                        low = std::min(low, lattice.key(i, j, k));
                        high = std::max(high, lattice.key(i, j, k));
                    }
            EXPECT_GE(low, lowest);
            EXPECT_LT(high - low, lattice.keyRange());
            lowest = low;
        }
    }
}

TEST(NormalSmoothingTest, KeysInNoOrderHaveNoRange)
{
    // The rows along z run downward.
    EXPECT_EQ(VertexLattice({4, 4, 4}, {1.0f, -1.0f, 1.0f}).keyRange(), 0u);
    // Keys that wrap at 32 bits.
    EXPECT_EQ(VertexLattice({2000, 2000, 2000}, {1.0f, 1.0f, 1.0f}).keyRange(), 0u);
}

TEST(NormalSmoothingTest, CellSizesOfNothingCountAsCellZero)
{
    EXPECT_EQ(VertexLattice({4, 4, 4}, {0.0f, 0.0f, 0.0f}).key(8, 8, 8), 0u);
}
