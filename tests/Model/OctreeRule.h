#pragma once

#include "Model/Automaton/CutLimits.h"
#include "Model/Automaton/OctreeNode.h"
#include "Model/Automaton/OctreeSurface.h"
#include "Model/Geometry/FaceList.h"
#include "Model/Materials/MaterialFactory.h"
#include "Support/Volumes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

/// The merged blocks of a volume as the rule has them: cells inserted one by one into a tree of
/// single nodes, which is then climbed for every neighbour.
namespace OctreeRule {

using Model::Automaton::CellTriple;
using Color = std::array<float, 4>;
using Point = std::array<float, 3>;
using Ids = std::vector<std::uint32_t>;

struct Node
{
    std::uint32_t material = 0;
    Node *parent = nullptr;
    std::array<Node *, 8> children{};
    std::uint32_t x = 0;
    std::uint32_t y = 0;
    std::uint32_t z = 0;
    std::uint32_t size = 0;
    bool leaf = true;

    Node() = default;
    Node(const Node &) = delete;
    Node &operator=(const Node &) = delete;
    ~Node() { dropChildren(); }

    void dropChildren()
    {
        for (Node *&child : children) {
            delete child;
            child = nullptr;
        }
    }

    /// Its place among the children of its parent.
    unsigned number() const
    {
        for (unsigned i = 0; i < 8; ++i)
            if (parent->children[i] == this)
                return i;
        throw std::logic_error("not a child of its parent");
    }
};

struct Direction
{
    Point normal;
    std::array<unsigned, 4> children;
    /// What flips to mirror a child along the axis.
    unsigned mirror;
    unsigned opposite;
    std::array<std::array<std::uint32_t, 3>, 4> vertices;
};

constexpr std::array<Direction, 6> directions = {
    {{{0, 0, 1}, {1, 3, 5, 7}, 1, 1, {{{0, 0, 1}, {1, 0, 1}, {1, 1, 1}, {0, 1, 1}}}},
     {{0, 0, -1}, {0, 2, 4, 6}, 1, 0, {{{0, 0, 0}, {0, 1, 0}, {1, 1, 0}, {1, 0, 0}}}},
     {{-1, 0, 0}, {0, 1, 2, 3}, 4, 3, {{{0, 0, 0}, {0, 0, 1}, {0, 1, 1}, {0, 1, 0}}}},
     {{1, 0, 0}, {4, 5, 6, 7}, 4, 2, {{{1, 0, 0}, {1, 1, 0}, {1, 1, 1}, {1, 0, 1}}}},
     {{0, -1, 0}, {0, 1, 4, 5}, 2, 5, {{{0, 0, 0}, {1, 0, 0}, {1, 0, 1}, {0, 0, 1}}}},
     {{0, 1, 0}, {2, 3, 6, 7}, 2, 4, {{{0, 1, 0}, {0, 1, 1}, {1, 1, 1}, {1, 1, 0}}}}}};

struct Face
{
    std::array<Point, 4> vertices;
    Point normal;
    /// Of its surface and of its edges.
    Color color;
    std::uint32_t material;
};

/// The colour that a selected volume gives to a face of this one.
inline Color highlighted(Color color)
{
    for (unsigned i = 0; i < 3; ++i) {
        const double part = static_cast<double>(color[i]);
        color[i] = static_cast<float>(part >= 0.7 ? part - 0.7 : part + 0.3);
    }
    return color;
}

inline Color registryColor(std::uint32_t id)
{
    const auto material = Model::Materials::MaterialFactory::instance()->material(id);
    const float *color = material.color();
    return {color[0], color[1], color[2], color[3]};
}

class Surface
{
public:
    Surface(const Support::Grid &grid, const Ids &ids, const CellTriple &lower,
            const CellTriple &upper)
        : m_grid(grid)
    {
        std::uint32_t extent = 0;
        for (unsigned axis = 0; axis < 3; ++axis)
            extent = std::max(extent, upper[axis] - lower[axis]);
        m_root.x = lower[0];
        m_root.y = lower[1];
        m_root.z = lower[2];
        m_root.size = static_cast<std::uint32_t>(
            std::pow(2.0, std::ceil(std::log2(static_cast<double>(extent)))));
        for (std::uint32_t x = lower[0]; x < upper[0]; ++x)
            for (std::uint32_t y = lower[1]; y < upper[1]; ++y)
                for (std::uint32_t z = lower[2]; z < upper[2]; ++z)
                    if (const std::uint32_t material = ids[grid.index(x, y, z)]; material != 0)
                        insert(material, x, y, z);
        traverse(m_root);
        for (const unsigned direction : {1U, 0U, 3U, 2U, 5U, 4U})
            emitFaces(&m_root, direction, true);
    }

    const Node &root() const { return m_root; }
    const std::vector<Face> &opaque() const { return m_opaque; }
    const std::vector<Face> &transparent() const { return m_transparent; }

private:
    void insert(std::uint32_t material, std::uint32_t x, std::uint32_t y, std::uint32_t z)
    {
        Node *node = &m_root;
        auto h = static_cast<std::uint32_t>(node->size * 0.5);
        while (h >= 1) {
            if (node->leaf && node->material != material)
                split(*node, h);
            const std::uint32_t child =
                ((x - node->x) / h) * 4 + ((y - node->y) / h) * 2 + (z - node->z) / h;
            node = node->children.at(child);
            if (node == nullptr)
                throw std::logic_error("a node with no children was entered");
            h = static_cast<std::uint32_t>(node->size * 0.5);
        }
        node->material = material;
        merge(node->parent);
    }

    static void split(Node &node, std::uint32_t size)
    {
        node.leaf = false;
        for (unsigned i = 0; i < 8; ++i) {
            Node *child = new Node;
            child->material = node.material;
            child->parent = &node;
            child->x = node.x + ((i >> 2) & 1U) * size;
            child->y = node.y + ((i >> 1) & 1U) * size;
            child->z = node.z + (i & 1U) * size;
            child->size = size;
            node.children[i] = child;
        }
    }

    /// Asks for the values of the children, not for leaves.
    static void merge(Node *parent)
    {
        while (parent != nullptr) {
            const std::uint32_t material = parent->children[0]->material;
            for (const Node *child : parent->children)
                if (child->material != material)
                    return;
            parent->dropChildren();
            parent->leaf = true;
            parent->material = material;
            parent = parent->parent;
        }
    }

    static const Node *neighbour(const Node *node, unsigned direction)
    {
        const Direction &way = directions[direction];
        // Those from which the neighbour is a sibling.
        const std::array<unsigned, 4> &near = directions[way.opposite].children;
        std::vector<unsigned> path;
        for (;;) {
            if (node->parent == nullptr)
                return nullptr;
            const unsigned number = node->number();
            path.push_back(number ^ way.mirror);
            node = node->parent;
            if (std::find(near.begin(), near.end(), number) != near.end())
                break;
        }
        while (!path.empty()) {
            const Node *child = node->children[path.back()];
            if (child == nullptr)
                return node;
            node = child;
            path.pop_back();
        }
        return node;
    }

    void traverse(const Node &node)
    {
        if (!node.leaf) {
            for (const Node *child : node.children)
                traverse(*child);
            return;
        }
        const bool empty = node.material == 0;
        if (!empty && !(static_cast<double>(colorOf(node.material)[3]) < 0.999))
            return;
        for (unsigned direction = 0; direction < 6; ++direction)
            emitFaces(neighbour(&node, direction), directions[direction].opposite, empty);
    }

    void emitFaces(const Node *node, unsigned direction, bool empty)
    {
        if (node == nullptr)
            return;
        const Direction &side = directions[direction];
        while (!node->leaf) {
            for (unsigned i = 0; i < 3; ++i)
                emitFaces(node->children[side.children[i]], direction, empty);
            node = node->children[side.children[3]];
        }
        if (node->material == 0)
            return;
        const Color color = colorOf(node->material);
        const double alpha = static_cast<double>(color[3]);
        if (!(alpha > 0.999 || (empty && alpha > 0.001)))
            return;
        Face face{};
        for (unsigned i = 0; i < 4; ++i) {
            const auto &offset = side.vertices[i];
            face.vertices[i] = {
                static_cast<float>(offset[0] * node->size + node->x) * m_grid.cellSizeX,
                static_cast<float>(offset[1] * node->size + node->y) * m_grid.cellSizeY,
                static_cast<float>(offset[2] * node->size + node->z) * m_grid.cellSizeZ};
        }
        face.normal = side.normal;
        face.color = color;
        face.material = node->material;
        (alpha > 0.999 ? m_opaque : m_transparent).push_back(face);
    }

    /// What the registry has, asked for once.
    const Color &colorOf(std::uint32_t material)
    {
        const auto found = m_colors.find(material);
        if (found != m_colors.end())
            return found->second;
        return m_colors[material] = registryColor(material);
    }

    const Support::Grid m_grid;
    std::map<std::uint32_t, Color> m_colors;
    Node m_root;
    std::vector<Face> m_opaque;
    std::vector<Face> m_transparent;
};

/// Compares two trees node by node; tells of the first that differs.
inline testing::AssertionResult agree(const Model::Automaton::OctreeNode &actual,
                                      const Node &expected)
{
    const auto place = [&] {
        return testing::AssertionFailure()
               << "node of size " << expected.size << " at (" << expected.x << ", " << expected.y
               << ", " << expected.z << "): ";
    };
    if (actual.x != expected.x || actual.y != expected.y || actual.z != expected.z ||
        actual.size != expected.size)
        return place() << "is of size " << actual.size << " at (" << actual.x << ", " << actual.y
                       << ", " << actual.z << ")";
    if (actual.leaf != expected.leaf)
        return place() << (actual.leaf ? "is a leaf" : "is no leaf");
    if (actual.material != expected.material)
        return place() << "material is " << actual.material << ", expected " << expected.material;
    if (expected.leaf) {
        if (actual.children != nullptr)
            return place() << "is a leaf with children";
        return testing::AssertionSuccess();
    }
    for (unsigned i = 0; i < 8; ++i) {
        const Model::Automaton::OctreeNode *child = actual.child(i);
        if (child == nullptr)
            return place() << "lacks child " << i;
        if (child->parent != &actual)
            return place() << "child " << i << " has another parent";
        if (const auto result = agree(*child, *expected.children[i]); !result)
            return result;
    }
    return testing::AssertionSuccess();
}

/// Compares everything of every face, in list order, bit by bit; tells of the first that differs.
inline testing::AssertionResult agree(const Model::Geometry::FaceList &actual,
                                      const std::vector<Face> &expected)
{
    std::size_t index = 0;
    std::string difference;
    actual.forEach([&](const Model::Geometry::QuadFace &face) {
        const std::size_t i = index++;
        if (!difference.empty() || i >= expected.size())
            return;
        const Face &should = expected[i];
        const auto differs = [](const void *a, const void *b, std::size_t size) {
            return std::memcmp(a, b, size) != 0;
        };
        const char *what = nullptr;
        if (differs(face.vertices, should.vertices.data(), sizeof(face.vertices)))
            what = "vertices";
        else if (Point{face.normal[0], face.normal[1], face.normal[2]} != should.normal)
            what = "normal";
        else if (differs(face.color, should.color.data(), sizeof(face.color)))
            what = "color";
        else if (differs(face.edgeColor, should.color.data(), sizeof(face.edgeColor)))
            what = "edge color";
        else if (Model::Automaton::OctreeSurface::materialOf(face) != should.material)
            what = "material";
        if (what != nullptr)
            difference = "face " + std::to_string(i) + ": " + what;
    });
    if (!difference.empty())
        return testing::AssertionFailure() << difference << " (" << actual.size()
                                           << " faces, expected " << expected.size() << ")";
    if (actual.size() != expected.size())
        return testing::AssertionFailure()
               << actual.size() << " faces, expected " << expected.size();
    return testing::AssertionSuccess();
}

} // namespace OctreeRule
