#pragma once

#include "Model/Automaton/MaterialPalette.h"
#include "Model/Geometry/FaceList.h"

#include <array>
#include <cstdint>

namespace Model::Automaton {

struct OctreeNode;

/// Lists the faces of the leaves of an octree that something looks at, see OctreeSurface.
class OctreeFaceBuilder final
{
public:
    /// Directions of neighbours and of faces.
    enum Direction : unsigned
    {
        ZUp = 0,
        ZDown = 1,
        XDown = 2,
        XUp = 3,
        YDown = 4,
        YUp = 5
    };

    /// The palette must outlive the builder.
    OctreeFaceBuilder(const std::array<float, 3> &cellSizes, const MaterialPalette &palette);

    /// Appends the faces in the order of the walk over the tree, and last those that look out of
    /// the root.
    void buildFaces(const OctreeNode &root, Geometry::FaceList &opaque,
                    Geometry::FaceList &transparent) const;

    /// The material id that a face keeps in its `voxel` field, in place of a cell.
    static std::uint32_t materialOf(const Geometry::QuadFace &face);

    /// Normal and corners of a node's face on the side of a direction, corners in node sizes and in
    /// drawing order, and the numbers of the four children on that side.
    struct FaceShape
    {
        float normal[3];
        std::uint8_t corners[4][3];
        std::uint8_t children[4];
    };
    /// By direction.
    static const std::array<FaceShape, 6> &faceShapes();

private:
    class Walk;

    std::array<float, 3> m_cellSizes;
    const MaterialPalette &m_palette;
};

} // namespace Model::Automaton
