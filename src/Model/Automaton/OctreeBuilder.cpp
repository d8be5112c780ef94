#include "Model/Automaton/OctreeBuilder.h"

#include "Model/Automaton/Voxel.h"

#include <algorithm>

namespace Model::Automaton {

namespace {

/// A node of up to this size is first tried as a whole, in a walk along its columns.
constexpr std::uint32_t WholeSize = 8;

} // namespace

void OctreeBuilder::build(OctreeNode &root, const Voxel *voxels, const CellTriple &sizes,
                          const CutLimits &limits)
{
    m_strideY = sizes[2];
    m_strideX = m_strideY * sizes[1];
    m_limits = limits;
    m_used = 0;
    root.parent = nullptr;
    root.children = nullptr;
    root.leaf = true;
    root.material = 0;
    for (unsigned axis = 0; axis < 3; ++axis)
        if (limits.lower[axis] >= limits.upper[axis])
            return;
    m_voxels = voxels;
    buildNode(root);
    m_voxels = nullptr;
}

void OctreeBuilder::buildNode(OctreeNode &node)
{
    if (isLeaf(node, node.material))
        return;
    OctreeNode *children = takeEight(node);
    bool isUniform = true;
    for (unsigned number = 0; number < 8; ++number) {
        buildNode(children[number]);
        isUniform =
            isUniform && children[number].leaf && children[number].material == children[0].material;
    }
    if (isUniform) {
        // Whatever was taken later was given back already.
        node.material = children[0].material;
        returnEight();
        return;
    }
    node.leaf = false;
    node.children = children;
}

/// True if the node is known to be a leaf without a look at its children.
bool OctreeBuilder::isLeaf(const OctreeNode &node, std::uint32_t &material) const
{
    const CellTriple &upper = m_limits.upper;
    material = 0;
    // The root starts at the lower limits, so only the upper ones cut.
    if (node.x >= upper[0] || node.y >= upper[1] || node.z >= upper[2])
        return true;
    const Voxel *first = m_voxels + node.x * m_strideX + node.y * m_strideY + node.z;
    if (node.size == 1) {
        material = first->material();
        return true;
    }
    if (node.size > WholeSize || node.size > upper[0] - node.x || node.size > upper[1] - node.y ||
        node.size > upper[2] - node.z)
        return false;
    const std::uint32_t expected = first->material();
    for (std::uint32_t x = 0; x < node.size; ++x) {
        for (std::uint32_t y = 0; y < node.size; ++y) {
            const Voxel *column = first + x * m_strideX + y * m_strideY;
            std::uint32_t difference = 0;
            for (std::uint32_t z = 0; z < node.size; ++z)
                difference |= column[z].material() ^ expected;
            if (difference != 0)
                return false;
        }
    }
    material = expected;
    return true;
}

OctreeNode *OctreeBuilder::takeEight(OctreeNode &parent)
{
    const std::size_t chunk = m_used / ChunkGroups;
    if (chunk == m_chunks.size())
        m_chunks.push_back(std::make_unique<OctreeNode[]>(8 * ChunkGroups));
    OctreeNode *children = m_chunks[chunk].get() + 8 * (m_used % ChunkGroups);
    ++m_used;
    const std::uint32_t half = parent.size / 2;
    for (unsigned number = 0; number < 8; ++number) {
        OctreeNode &child = children[number];
        child = OctreeNode();
        child.parent = &parent;
        child.x = parent.x + (number >> 2 & 1) * half;
        child.y = parent.y + (number >> 1 & 1) * half;
        child.z = parent.z + (number & 1) * half;
        child.size = half;
    }
    return children;
}

} // namespace Model::Automaton
