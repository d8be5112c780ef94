#include "Model/Automaton/OctreeFaceBuilder.h"

#include "Model/Automaton/MarchingCubeSurface.h"
#include "Model/Automaton/OctreeBuilder.h"
#include "Model/Automaton/OctreeSurface.h"
#include "Model/Automaton/TotalVolume.h"
#include "Model/Automaton/Voxel.h"
#include "Support/Volumes.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <random>
#include <vector>

using Model::Automaton::CellTriple;
using Model::Automaton::MarchingCubeSurface;
using Model::Automaton::MaterialPalette;
using Model::Automaton::OctreeBuilder;
using Model::Automaton::OctreeFaceBuilder;
using Model::Automaton::OctreeNode;
using Model::Automaton::OctreeSurface;
using Model::Automaton::Voxel;
using Model::Geometry::FaceList;
using Model::Geometry::QuadFace;
using Model::Materials::Material;

namespace {

// Materials of these tests by id: opaque, opaque, half clear, on the limits, fully clear.
const std::array<float, 7> Alphas = {0.0f, 1.0f, 1.0f, 0.5f, 0.9985f, 0.9995f, 0.0005f};

struct Face
{
    const OctreeNode *node;
    unsigned direction;
};

/// The rule for the faces of a tree, with the neighbours found by climbing.
class ExpectedFaces
{
public:
    explicit ExpectedFaces(const OctreeNode &root)
    {
        traverse(root);
        for (const unsigned direction : {1u, 0u, 3u, 2u, 5u, 4u})
            emitFaces(&root, direction, true);
    }

    std::vector<Face> opaque;
    std::vector<Face> transparent;

private:
    using Four = std::array<unsigned, 4>;
    static constexpr std::array<unsigned, 6> Opposite = {1, 0, 3, 2, 5, 4};
    static constexpr std::array<Four, 6> Children = {Four{1, 3, 5, 7}, Four{0, 2, 4, 6},
                                                     Four{0, 1, 2, 3}, Four{4, 5, 6, 7},
                                                     Four{0, 1, 4, 5}, Four{2, 3, 6, 7}};
    static constexpr std::array<unsigned, 6> MirrorBit = {1, 1, 4, 4, 2, 2};

    static const OctreeNode *neighbor(const OctreeNode *node, unsigned direction)
    {
        std::vector<unsigned> path;
        for (;;) {
            const OctreeNode *parent = node->parent;
            if (parent == nullptr)
                return nullptr;
            unsigned number = 0;
            while (parent->child(number) != node)
                ++number;
            path.push_back(number ^ MirrorBit[direction]);
            node = parent;
            bool staysInside = false;
            for (const unsigned child : Children[Opposite[direction]])
                staysInside = staysInside || child == number;
            if (staysInside)
                break;
        }
        for (; !path.empty() && node->child(path.back()) != nullptr; path.pop_back())
            node = node->child(path.back());
        return node;
    }

    void traverse(const OctreeNode &node)
    {
        if (!node.leaf) {
            for (unsigned number = 0; number < 8; ++number)
                traverse(*node.child(number));
            return;
        }
        const bool empty = node.material == 0;
        if (!empty && !(Alphas[node.material] < 0.999f))
            return;
        for (unsigned direction = 0; direction < 6; ++direction)
            emitFaces(neighbor(&node, direction), Opposite[direction], empty);
    }

    void emitFaces(const OctreeNode *node, unsigned direction, bool flag)
    {
        if (node == nullptr)
            return;
        while (!node->leaf) {
            for (unsigned i = 0; i < 3; ++i)
                emitFaces(node->child(Children[direction][i]), direction, flag);
            node = node->child(Children[direction][3]);
        }
        if (node->material == 0)
            return;
        const float alpha = Alphas[node->material];
        if (!(alpha > 0.999f || (flag && alpha > 0.001f)))
            return;
        (alpha > 0.999f ? opaque : transparent).push_back({node, direction});
    }
};

class OctreeFaceBuilderTest : public ::testing::Test
{
protected:
    OctreeFaceBuilderTest()
    {
        std::vector<Material> materials;
        for (std::uint32_t id = 1; id < Alphas.size(); ++id) {
            const float color[4] = {0.1f * static_cast<float>(id), 0.5f, 0.25f, Alphas[id]};
            materials.emplace_back(id, QString(), 1.0f, 1.0f, 1.0f, color);
        }
        m_palette.reload(materials);
    }

    template <typename Rule>
    void build(const CellTriple &sizes, std::uint32_t rootSize, Rule rule)
    {
        m_cells.clear();
        for (std::uint32_t x = 0; x < sizes[0]; ++x)
            for (std::uint32_t y = 0; y < sizes[1]; ++y)
                for (std::uint32_t z = 0; z < sizes[2]; ++z)
                    m_cells.emplace_back(static_cast<std::uint32_t>(rule(x, y, z)));
        m_root.size = rootSize;
        m_builder.build(m_root, m_cells.data(), sizes, {{0, 0, 0}, sizes});
        m_opaque.clear();
        m_transparent.clear();
        OctreeFaceBuilder(CellSizes, m_palette).buildFaces(m_root, m_opaque, m_transparent);
    }

    void expectFaces(const FaceList &actual, const std::vector<Face> &expected) const
    {
        ASSERT_EQ(actual.size(), expected.size());
        std::size_t i = 0;
        actual.forEach([&](const QuadFace &face) {
            const OctreeNode &node = *expected[i].node;
            const unsigned direction = expected[i++].direction;
            EXPECT_EQ(OctreeFaceBuilder::materialOf(face), node.material);
            const unsigned axis = std::array<unsigned, 6>{2, 2, 0, 0, 1, 1}[direction];
            const bool isUp = direction == 0 || direction == 3 || direction == 5;
            const std::uint32_t place[3] = {node.x, node.y, node.z};
            float low[3] = {1e9f, 1e9f, 1e9f};
            float high[3] = {-1e9f, -1e9f, -1e9f};
            for (const auto &vertex : face.vertices)
                for (unsigned a = 0; a < 3; ++a) {
                    low[a] = std::min(low[a], vertex[a]);
                    high[a] = std::max(high[a], vertex[a]);
                }
            for (unsigned a = 0; a < 3; ++a) {
                EXPECT_EQ(face.normal[a], a != axis ? 0.0f : isUp ? 1.0f : -1.0f);
                const bool isAbove = a == axis && isUp;
                const bool isBelow = a == axis && !isUp;
                EXPECT_EQ(low[a],
                          static_cast<float>(place[a] + (isAbove ? node.size : 0)) * CellSizes[a]);
                EXPECT_EQ(high[a],
                          static_cast<float>(place[a] + (isBelow ? 0 : node.size)) * CellSizes[a]);
            }
            // Counter-clockwise seen from where the normal points.
            float first[3];
            float second[3];
            for (unsigned a = 0; a < 3; ++a) {
                first[a] = face.vertices[1][a] - face.vertices[0][a];
                second[a] = face.vertices[2][a] - face.vertices[0][a];
            }
            const unsigned j = (axis + 1) % 3;
            const unsigned k = (axis + 2) % 3;
            EXPECT_GT((first[j] * second[k] - first[k] * second[j]) * face.normal[axis], 0.0f);
            for (unsigned channel = 0; channel < 4; ++channel) {
                EXPECT_EQ(face.color[channel], m_palette.color(node.material)[channel]);
                EXPECT_EQ(face.edgeColor[channel], m_palette.color(node.material)[channel]);
            }
        });
    }

    void expectFacesOfRule() const
    {
        const ExpectedFaces expected(m_root);
        expectFaces(m_opaque, expected.opaque);
        expectFaces(m_transparent, expected.transparent);
    }

    const std::array<float, 3> CellSizes = {0.5f, 0.1f, 3.0f};
    MaterialPalette m_palette;
    std::vector<Voxel> m_cells;
    OctreeNode m_root;
    OctreeBuilder m_builder;
    FaceList m_opaque;
    FaceList m_transparent;
};

} // namespace

TEST_F(OctreeFaceBuilderTest, ListsAreThoseOfTheWalkWithClimbedNeighbours)
{
    constexpr unsigned Seed = 1984;
    SCOPED_TRACE(Seed);
    std::mt19937 random(Seed);
    const auto below = [&](std::uint32_t end) {
        return std::uniform_int_distribution<std::uint32_t>(0, end - 1)(random);
    };
    for (int round = 0; round < 40; ++round) {
        const CellTriple sizes = {1 + below(16), 1 + below(16), 1 + below(16)};
        const std::uint32_t block = 1u << below(4);
        std::vector<std::uint32_t> blocks(16 * 16 * 16);
        for (std::uint32_t &material : blocks)
            material = below(Alphas.size());
        build(sizes, 16, [&](auto x, auto y, auto z) {
            return blocks[((x / block) * 16 + y / block) * 16 + z / block];
        });
        expectFacesOfRule();
        ASSERT_FALSE(HasFailure()) << "round " << round;
    }
}

TEST_F(OctreeFaceBuilderTest, AlignedCubeHasSixQuads)
{
    build({64, 64, 64}, 64, [](auto...) { return 1; });
    EXPECT_EQ(m_opaque.size(), 6u);
    EXPECT_TRUE(m_transparent.empty());
}

TEST_F(OctreeFaceBuilderTest, LargeLeafGivesItsFaceToEverySmallerOneThatLooksAtIt)
{
    // A cube of four, and on it one cell of the same: the face upward comes for the three void
    // cells beside that cell, and for the three void nodes of two beside its node.
    build({4, 4, 8}, 8,
          [](auto x, auto y, auto z) { return z < 4 || (x == 0 && y == 0 && z == 4) ? 1 : 0; });
    std::size_t upward = 0;
    m_opaque.forEach([&](const QuadFace &face) {
        if (face.normal[2] > 0 && face.vertices[0][2] == 4 * CellSizes[2])
            ++upward;
    });
    EXPECT_EQ(upward, 6u);
}

TEST_F(OctreeFaceBuilderTest, SurfacesOfVolumesOfAnySizeAreBuiltAndDrawnWithoutAContext)
{
    constexpr std::uint32_t Most = 4294967295U;
    for (const CellTriple &sizes :
         {CellTriple{0, 0, 0}, {5, 0, 5}, {0, 5, 5}, {1, 1, 1}, {1, 7, 3}, {3, 3, 1}}) {
        const auto volume =
            Support::makeVolume({sizes[0], sizes[1], sizes[2]}, [](auto...) { return 1; });
        MarchingCubeSurface smooth(volume.get());
        OctreeSurface blocks(volume.get());
        for (const auto &[lower, upper] : {std::pair<CellTriple, CellTriple>{{0, 0, 0}, sizes},
                                           {{0, 0, 0}, {Most, Most, Most}},
                                           {{Most, Most, Most}, {Most, Most, Most}},
                                           {sizes, sizes},
                                           {sizes, {0, 0, 0}}}) {
            smooth.rebuild(lower, upper);
            smooth.draw(true);
            EXPECT_TRUE(smooth.triangles().empty());
            blocks.rebuild(lower, upper);
            blocks.refreshColors();
            blocks.draw(true, true);
            blocks.draw(true, false);
            const bool hasCells = lower == CellTriple{0, 0, 0} && upper != CellTriple{0, 0, 0} &&
                                  sizes[0] * sizes[1] * sizes[2] > 0;
            EXPECT_EQ(!blocks.opaqueFaces().empty(), hasCells);
            EXPECT_TRUE(blocks.transparentFaces().empty());
        }
    }
}
