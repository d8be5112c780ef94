#pragma once

#include "Model/Automaton/CutLimits.h"
#include "Model/Automaton/OctreeNode.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace Model::Automaton {

class Voxel;

/// Builds octrees and owns all nodes but the root of the one that it built last.
///
/// Inserting the filled cells one by one, with eight children merged as soon as their materials
/// agree, never splits a leaf that was merged, since all its cells are in it already. So the tree
/// depends on the cells alone, and this makes it from the leaves upward.
class OctreeBuilder final
{
public:
    /// `sizes` are those of the volume, `root` has its place and size. Drops the tree before.
    void build(OctreeNode &root, const Voxel *voxels, const CellTriple &sizes,
               const CutLimits &limits);

private:
    void buildNode(OctreeNode &node);
    bool isLeaf(const OctreeNode &node, std::uint32_t &material) const;
    OctreeNode *takeEight(OctreeNode &parent);
    void returnEight() { --m_used; }

    /// Groups of eight nodes that are allocated at a time.
    static constexpr std::size_t ChunkGroups = 1024;

    const Voxel *m_voxels = nullptr;
    std::size_t m_strideX = 0;
    std::size_t m_strideY = 0;
    CutLimits m_limits;
    /// Memory of all trees so far, and the groups of it that the present one uses.
    std::vector<std::unique_ptr<OctreeNode[]>> m_chunks;
    std::size_t m_used = 0;
};

} // namespace Model::Automaton
