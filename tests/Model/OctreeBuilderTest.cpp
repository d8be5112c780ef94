#include "Model/Automaton/OctreeBuilder.h"

#include "Model/Automaton/Voxel.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <random>
#include <vector>

using Model::Automaton::CellTriple;
using Model::Automaton::CutLimits;
using Model::Automaton::OctreeBuilder;
using Model::Automaton::OctreeNode;
using Model::Automaton::Voxel;

namespace {

/// The tree as insertion of one cell after the other makes it.
struct Inserted
{
    std::uint32_t material = 0;
    Inserted *parent = nullptr;
    std::array<std::unique_ptr<Inserted>, 8> children;
    std::uint32_t x = 0;
    std::uint32_t y = 0;
    std::uint32_t z = 0;
    std::uint32_t size = 0;
    bool leaf = true;
};

void insert(Inserted &root, std::uint32_t material, std::uint32_t x, std::uint32_t y,
            std::uint32_t z)
{
    Inserted *node = &root;
    for (std::uint32_t half = root.size / 2; half >= 1; half /= 2) {
        if (node->leaf && node->material != material) {
            node->leaf = false;
            for (unsigned c = 0; c < 8; ++c) {
                node->children[c] = std::make_unique<Inserted>();
                Inserted &child = *node->children[c];
                child.material = node->material;
                child.parent = node;
                child.x = node->x + (c / 4 % 2) * half;
                child.y = node->y + (c / 2 % 2) * half;
                child.z = node->z + (c % 2) * half;
                child.size = half;
            }
        }
        ASSERT_FALSE(node->leaf) << "a full leaf is entered again";
        node = node->children[((x - node->x) / half) * 4 + ((y - node->y) / half) * 2 +
                              (z - node->z) / half]
                   .get();
    }
    node->material = material;
    for (Inserted *parent = node->parent; parent != nullptr; parent = parent->parent) {
        // Only the values count, whether leaf or not.
        const std::uint32_t first = parent->children[0]->material;
        if (!std::all_of(parent->children.begin(), parent->children.end(),
                         [first](const auto &child) { return child->material == first; }))
            return;
        for (auto &child : parent->children)
            child.reset();
        parent->leaf = true;
        parent->material = first;
    }
}

void expectEqual(const Inserted &expected, const OctreeNode &node, const OctreeNode *parent)
{
    ASSERT_EQ(node.leaf, expected.leaf);
    ASSERT_EQ(node.material, expected.material);
    ASSERT_EQ(node.parent, parent);
    ASSERT_EQ(node.x, expected.x);
    ASSERT_EQ(node.y, expected.y);
    ASSERT_EQ(node.z, expected.z);
    ASSERT_EQ(node.size, expected.size);
    for (unsigned c = 0; c < 8; ++c) {
        ASSERT_EQ(node.child(c) == nullptr, node.leaf);
        if (!node.leaf) {
            expectEqual(*expected.children[c], *node.child(c), &node);
            if (::testing::Test::HasFatalFailure())
                return;
        }
    }
}

using Rule = std::function<std::uint32_t(std::uint32_t, std::uint32_t, std::uint32_t)>;

class OctreeBuilderTest : public ::testing::Test
{
protected:
    void fill(const CellTriple &sizes, const Rule &rule)
    {
        m_sizes = sizes;
        m_cells.clear();
        for (std::uint32_t x = 0; x < sizes[0]; ++x)
            for (std::uint32_t y = 0; y < sizes[1]; ++y)
                for (std::uint32_t z = 0; z < sizes[2]; ++z)
                    m_cells.emplace_back(rule(x, y, z));
    }

    const OctreeNode &build(const CutLimits &limits, std::uint32_t rootSize)
    {
        m_root.x = limits.lower[0];
        m_root.y = limits.lower[1];
        m_root.z = limits.lower[2];
        m_root.size = rootSize;
        m_builder.build(m_root, m_cells.data(), m_sizes, limits);
        return m_root;
    }

    void expectTreeOfInsertion(const CutLimits &limits)
    {
        std::uint32_t extent = 0;
        for (unsigned axis = 0; axis < 3; ++axis)
            extent = std::max(extent, limits.upper[axis] - limits.lower[axis]);
        std::uint32_t size = 1;
        while (size < extent)
            size *= 2;
        Inserted expected;
        expected.x = limits.lower[0];
        expected.y = limits.lower[1];
        expected.z = limits.lower[2];
        expected.size = size;
        for (std::uint32_t x = limits.lower[0]; x < limits.upper[0]; ++x)
            for (std::uint32_t y = limits.lower[1]; y < limits.upper[1]; ++y)
                for (std::uint32_t z = limits.lower[2]; z < limits.upper[2]; ++z) {
                    const std::uint32_t material =
                        m_cells[(std::size_t{x} * m_sizes[1] + y) * m_sizes[2] + z].material();
                    if (material != 0)
                        insert(expected, material, x, y, z);
                }
        expectEqual(expected, build(limits, size), nullptr);
    }

    CellTriple m_sizes{};
    std::vector<Voxel> m_cells;
    OctreeNode m_root;
    OctreeBuilder m_builder;
};

} // namespace

TEST_F(OctreeBuilderTest, TreeIsTheOneThatInsertionGives)
{
    constexpr unsigned Seed = 90125;
    SCOPED_TRACE(Seed);
    std::mt19937 random(Seed);
    const auto below = [&](std::uint32_t end) {
        return std::uniform_int_distribution<std::uint32_t>(0, end - 1)(random);
    };
    for (int round = 0; round < 60; ++round) {
        const CellTriple sizes = {1 + below(20), 1 + below(20), 1 + below(36)};
        // From noise of single cells to blocks that are mostly one material.
        const std::uint32_t block = 1u << below(5);
        const std::uint32_t materials = 1 + below(3);
        const unsigned noise = below(3) == 0 ? 30 : 2000;
        std::vector<std::uint32_t> blocks(64 * 64 * 64);
        for (std::uint32_t &material : blocks)
            material = below(materials + 1);
        fill(sizes, [&](std::uint32_t x, std::uint32_t y, std::uint32_t z) {
            if (below(noise) == 0)
                return below(materials + 1);
            return blocks[((x / block) * 64 + y / block) * 64 + z / block];
        });
        CutLimits limits{{0, 0, 0}, sizes};
        if (round % 2 == 1)
            for (unsigned axis = 0; axis < 3; ++axis) {
                limits.lower[axis] = below(sizes[axis]);
                limits.upper[axis] =
                    limits.lower[axis] + 1 + below(sizes[axis] - limits.lower[axis]);
            }
        expectTreeOfInsertion(limits);
        ASSERT_FALSE(HasFailure()) << "round " << round;
    }
}

TEST_F(OctreeBuilderTest, FullAlignedCubeIsOneLeaf)
{
    fill({64, 64, 64}, [](auto...) { return 5; });
    const OctreeNode &root = build({{0, 0, 0}, {64, 64, 64}}, 64);
    EXPECT_TRUE(root.leaf);
    EXPECT_EQ(root.material, 5u);
    EXPECT_EQ(root.children, nullptr);
}

TEST_F(OctreeBuilderTest, RootOfOneCellTakesItsMaterial)
{
    fill({3, 3, 3}, [](auto x, auto y, auto z) { return 9 * x + 3 * y + z; });
    const OctreeNode &root = build({{1, 2, 0}, {2, 3, 1}}, 1);
    EXPECT_TRUE(root.leaf);
    EXPECT_EQ(root.material, 15u);
    EXPECT_EQ(root.parent, nullptr);
}

TEST_F(OctreeBuilderTest, CutWithoutCellsIsAnEmptyLeaf)
{
    fill({4, 4, 4}, [](auto...) { return 1; });
    EXPECT_FALSE(build({{0, 0, 0}, {3, 4, 4}}, 4).leaf);
    for (const CutLimits &limits :
         {CutLimits{{2, 2, 2}, {2, 2, 2}}, CutLimits{{0, 3, 0}, {4, 1, 4}},
          CutLimits{{4, 0, 0}, {4, 4, 4}}, CutLimits{{0, 0, 0}, {0, 0, 0}}}) {
        const OctreeNode &root = build(limits, 4);
        EXPECT_TRUE(root.leaf);
        EXPECT_EQ(root.material, 0u);
        EXPECT_EQ(root.children, nullptr);
    }
}

TEST_F(OctreeBuilderTest, VolumesOneCellThickAreTreesOfSingleCells)
{
    for (unsigned axis = 0; axis < 3; ++axis) {
        CellTriple sizes = {9, 9, 9};
        sizes[axis] = 1;
        fill(sizes, [](auto x, auto y, auto z) { return (x + y + z) % 3; });
        expectTreeOfInsertion({{0, 0, 0}, sizes});
    }
}
