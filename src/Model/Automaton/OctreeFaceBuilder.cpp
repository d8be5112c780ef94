#include "Model/Automaton/OctreeFaceBuilder.h"

#include "Model/Automaton/OctreeNode.h"

#include <cstring>

namespace Model::Automaton {

using Geometry::FaceList;
using Geometry::QuadFace;

namespace {

const std::array<OctreeFaceBuilder::FaceShape, 6> FaceShapes = {{
    {{0, 0, 1}, {{0, 0, 1}, {1, 0, 1}, {1, 1, 1}, {0, 1, 1}}, {1, 3, 5, 7}},
    {{0, 0, -1}, {{0, 0, 0}, {0, 1, 0}, {1, 1, 0}, {1, 0, 0}}, {0, 2, 4, 6}},
    {{-1, 0, 0}, {{0, 0, 0}, {0, 0, 1}, {0, 1, 1}, {0, 1, 0}}, {0, 1, 2, 3}},
    {{1, 0, 0}, {{1, 0, 0}, {1, 1, 0}, {1, 1, 1}, {1, 0, 1}}, {4, 5, 6, 7}},
    {{0, -1, 0}, {{0, 0, 0}, {1, 0, 0}, {1, 0, 1}, {0, 0, 1}}, {0, 1, 4, 5}},
    {{0, 1, 0}, {{0, 1, 0}, {0, 1, 1}, {1, 1, 1}, {1, 1, 0}}, {2, 3, 6, 7}},
}};

constexpr std::array<OctreeFaceBuilder::Direction, 6> Opposite = {
    OctreeFaceBuilder::ZDown, OctreeFaceBuilder::ZUp, OctreeFaceBuilder::XUp,
    OctreeFaceBuilder::XDown, OctreeFaceBuilder::YUp, OctreeFaceBuilder::YDown};

/// The bit of a child's number that says on which side of its parent it lies, by direction.
constexpr std::array<unsigned, 6> SideBit = {1, 1, 4, 4, 2, 2};
/// The value of that bit in the children on the side of the direction.
constexpr std::array<unsigned, 6> FarSide = {1, 0, 0, 4, 0, 2};

constexpr float OpaqueAlpha = 0.999f;
constexpr float ClearAlpha = 0.001f;

/// The neighbours of a node by direction: of its own size, or a larger leaf, or null where the root
/// ends.
using Neighbors = std::array<const OctreeNode *, 6>;

Neighbors neighborsOfChild(const OctreeNode &parent, const Neighbors &neighbors, unsigned child)
{
    Neighbors result{};
    for (unsigned direction = 0; direction < 6; ++direction) {
        const unsigned mirror = child ^ SideBit[direction];
        const OctreeNode *node = neighbors[direction];
        if ((child & SideBit[direction]) != FarSide[direction])
            result[direction] = parent.children + mirror;
        else if (node != nullptr && !node->leaf)
            result[direction] = node->children + mirror;
        else
            result[direction] = node;
    }
    return result;
}

} // namespace

/// One walk over a tree that lists its faces.
class OctreeFaceBuilder::Walk final
{
public:
    Walk(const MaterialPalette &palette, const std::array<float, 3> &cellSizes, FaceList &opaque,
         FaceList &transparent)
        : m_palette(palette),
          m_cellSizes(cellSizes),
          m_opaque(opaque),
          m_transparent(transparent)
    {}

    void visit(const OctreeNode &node, const Neighbors &neighbors)
    {
        if (!node.leaf) {
            for (unsigned number = 0; number < 8; ++number) {
                const OctreeNode &child = node.children[number];
                if (!child.leaf || showsThrough(child))
                    visit(child, neighborsOfChild(node, neighbors, number));
            }
        } else if (showsThrough(node)) {
            for (unsigned direction = 0; direction < 6; ++direction)
                if (neighbors[direction] != nullptr)
                    addFaces(*neighbors[direction], Opposite[direction], node.material == 0);
        }
    }

    /// The faces of a node on one side, for who looks at them from there.
    void addFaces(const OctreeNode &node, unsigned direction, bool fromVoid)
    {
        if (!node.leaf) {
            for (const std::uint8_t number : FaceShapes[direction].children)
                addFaces(node.children[number], direction, fromVoid);
            return;
        }
        if (node.material == 0)
            return;
        const MaterialPalette::Color &color = m_palette.color(node.material);
        const float alpha = color[3];
        if (alpha > OpaqueAlpha)
            addFace(m_opaque.append(), node, direction, color);
        else if (fromVoid && alpha > ClearAlpha)
            addFace(m_transparent.append(), node, direction, color);
    }

private:
    bool showsThrough(const OctreeNode &leaf) const
    {
        return leaf.material == 0 || m_palette.color(leaf.material)[3] < OpaqueAlpha;
    }

    void addFace(QuadFace &face, const OctreeNode &node, unsigned direction,
                 const MaterialPalette::Color &color) const
    {
        const OctreeFaceBuilder::FaceShape &shape = FaceShapes[direction];
        const std::uint32_t place[3] = {node.x, node.y, node.z};
        for (unsigned corner = 0; corner < 4; ++corner)
            for (unsigned axis = 0; axis < 3; ++axis)
                face.vertices[corner][axis] =
                    static_cast<float>(shape.corners[corner][axis] * node.size + place[axis]) *
                    m_cellSizes[axis];
        face.normal = shape.normal;
        std::memcpy(face.color, color.data(), sizeof face.color);
        std::memcpy(face.edgeColor, color.data(), sizeof face.edgeColor);
        // The material stands in the pointer's place: a leaf has no cell of its own.
        face.voxel = reinterpret_cast<const Voxel *>(std::uintptr_t{node.material});
    }

    const MaterialPalette &m_palette;
    std::array<float, 3> m_cellSizes;
    FaceList &m_opaque;
    FaceList &m_transparent;
};

OctreeFaceBuilder::OctreeFaceBuilder(const std::array<float, 3> &cellSizes,
                                     const MaterialPalette &palette)
    : m_cellSizes(cellSizes),
      m_palette(palette)
{}

void OctreeFaceBuilder::buildFaces(const OctreeNode &root, FaceList &opaque,
                                   FaceList &transparent) const
{
    Walk walk(m_palette, m_cellSizes, opaque, transparent);
    walk.visit(root, Neighbors{});
    for (const Direction direction : {ZDown, ZUp, XUp, XDown, YUp, YDown})
        walk.addFaces(root, direction, true);
}

std::uint32_t OctreeFaceBuilder::materialOf(const QuadFace &face)
{
    return static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(face.voxel));
}

const std::array<OctreeFaceBuilder::FaceShape, 6> &OctreeFaceBuilder::faceShapes()
{
    return FaceShapes;
}

} // namespace Model::Automaton
