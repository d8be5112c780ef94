#include "Model/Automaton/OctreeSurface.h"

#include "Model/Automaton/TotalVolume.h"
#include "Model/Geometry/DrawState.h"
#include "Model/Materials/MaterialFactory.h"

#include <GL/gl.h>

#include <algorithm>
#include <cstring>

namespace Model::Automaton {

using Geometry::FaceBuffer;
using Geometry::FaceList;
using Geometry::QuadFace;

namespace {

const std::array<OctreeSurface::FaceShape, 6> FaceShapes = {{
    {{0, 0, 1}, {{0, 0, 1}, {1, 0, 1}, {1, 1, 1}, {0, 1, 1}}, {1, 3, 5, 7}},
    {{0, 0, -1}, {{0, 0, 0}, {0, 1, 0}, {1, 1, 0}, {1, 0, 0}}, {0, 2, 4, 6}},
    {{-1, 0, 0}, {{0, 0, 0}, {0, 0, 1}, {0, 1, 1}, {0, 1, 0}}, {0, 1, 2, 3}},
    {{1, 0, 0}, {{1, 0, 0}, {1, 1, 0}, {1, 1, 1}, {1, 0, 1}}, {4, 5, 6, 7}},
    {{0, -1, 0}, {{0, 0, 0}, {1, 0, 0}, {1, 0, 1}, {0, 0, 1}}, {0, 1, 4, 5}},
    {{0, 1, 0}, {{0, 1, 0}, {0, 1, 1}, {1, 1, 1}, {1, 1, 0}}, {2, 3, 6, 7}},
}};

constexpr std::array<OctreeSurface::Direction, 6> Opposite = {
    OctreeSurface::ZDown, OctreeSurface::ZUp, OctreeSurface::XUp,
    OctreeSurface::XDown, OctreeSurface::YUp, OctreeSurface::YDown};

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

/// One walk over a tree that lists its faces.
class FaceWalk final
{
public:
    FaceWalk(const MaterialPalette &palette, const std::array<float, 3> &cellSizes,
             FaceList &opaque, FaceList &transparent)
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
        const OctreeSurface::FaceShape &shape = FaceShapes[direction];
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

/// The smallest power of two that is not below the extent; 0 for 0.
std::uint32_t rootSize(std::uint32_t extent)
{
    if (extent == 0)
        return 0;
    std::uint32_t size = 1;
    while (size < extent && size < 0x80000000)
        size *= 2;
    return size;
}

} // namespace

OctreeSurface::OctreeSurface(TotalVolume *volume)
    : m_volume(volume),
      m_materials(Materials::MaterialFactory::instance())
{}

void OctreeSurface::rebuild(const CellTriple &lower, const CellTriple &upper)
{
    m_opaqueFaces.clear();
    m_transparentFaces.clear();
    m_palette.reload(m_materials->materials());
    const CellTriple sizes = {m_volume->sizeX(), m_volume->sizeY(), m_volume->sizeZ()};
    CutLimits limits = {lower, upper};
    std::uint32_t extent = 0;
    for (unsigned axis = 0; axis < 3; ++axis) {
        limits.upper[axis] = std::min(upper[axis], sizes[axis]);
        if (limits.lower[axis] < limits.upper[axis])
            extent = std::max(extent, limits.upper[axis] - limits.lower[axis]);
    }
    m_root.x = lower[0];
    m_root.y = lower[1];
    m_root.z = lower[2];
    m_root.size = rootSize(extent);
    m_builder.build(m_root, m_volume->voxels(), sizes, limits);
    FaceWalk walk(m_palette, {m_volume->cellSizeX(), m_volume->cellSizeY(), m_volume->cellSizeZ()},
                  m_opaqueFaces, m_transparentFaces);
    walk.visit(m_root, Neighbors{});
    for (const Direction direction : {ZDown, ZUp, XUp, XDown, YUp, YDown})
        walk.addFaces(m_root, direction, true);
    m_volume->releaseVoxels();
    m_opaqueBuffer.setChanged();
    m_transparentBuffer.setChanged();
}

void OctreeSurface::draw(bool showEdges, bool opaque)
{
    const FaceList &faces = opaque ? m_opaqueFaces : m_transparentFaces;
    FaceBuffer &buffer = opaque ? m_opaqueBuffer : m_transparentBuffer;
    glPushMatrix();
    buffer.draw(faces, FaceBuffer::Fill);
    if (showEdges) {
        Geometry::pushEdgeState();
        buffer.draw(faces, FaceBuffer::Edge);
        glPopAttrib();
    }
    glPopMatrix();
}

void OctreeSurface::refreshColors()
{
    m_palette.reload(m_materials->materials());
    const bool selected = m_volume->isSelected();
    const auto recolor = [&](QuadFace &face) {
        const MaterialPalette::Color &color = m_palette.color(materialOf(face));
        for (float(*target)[4] : {&face.color, &face.edgeColor}) {
            if (selected)
                MaterialPalette::highlight(*target);
            else
                std::memcpy(*target, color.data(), sizeof *target);
        }
    };
    m_opaqueFaces.forEach(recolor);
    m_transparentFaces.forEach(recolor);
    m_opaqueBuffer.setRecolored();
    m_transparentBuffer.setRecolored();
}

std::uint32_t OctreeSurface::materialOf(const QuadFace &face)
{
    return static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(face.voxel));
}

const std::array<OctreeSurface::FaceShape, 6> &OctreeSurface::faceShapes()
{
    return FaceShapes;
}

} // namespace Model::Automaton
