#pragma once

#include <cstdint>

namespace Model::Automaton {

/// A cube of cells in an octree. The surface that built it owns it.
struct OctreeNode
{
    /// Material of a leaf, 0 for void. Also 0 in an inner node: only leaves of void are split.
    std::uint32_t material = 0;
    /// Null at the root.
    OctreeNode *parent = nullptr;
    /// The first of eight, side by side; null in a leaf. Child c lies at the offset (bit 2, bit 1,
    /// bit 0 of c) in halves of the node: x is the high bit, z the low one.
    OctreeNode *children = nullptr;
    /// The lowest cell of the cube.
    std::uint32_t x = 0;
    std::uint32_t y = 0;
    std::uint32_t z = 0;
    /// Edge in cells, a power of two; 0 in the root of an empty cut.
    std::uint32_t size = 0;
    bool leaf = true;

    /// Null in a leaf.
    const OctreeNode *child(unsigned number) const
    {
        return children == nullptr ? nullptr : children + number;
    }
};

} // namespace Model::Automaton
