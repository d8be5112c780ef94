#include "Model/Automaton/OctreeSurface.h"

#include "Model/Automaton/OctreeFaceBuilder.h"
#include "Model/Automaton/TakenCells.h"
#include "Model/Automaton/TotalVolume.h"
#include "Model/Geometry/DrawState.h"
#include "Model/Materials/MaterialFactory.h"

#include <GL/gl.h>

#include <algorithm>

namespace Model::Automaton {

using Geometry::FaceBuffer;
using Geometry::FaceList;
using Geometry::QuadFace;

namespace {

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
    m_opaqueBuffer.setChanged();
    m_transparentBuffer.setChanged();
    const TakenCells voxels(*m_volume);
    m_builder.build(m_root, voxels.cells(), sizes, limits);
    OctreeFaceBuilder({m_volume->cellSizeX(), m_volume->cellSizeY(), m_volume->cellSizeZ()},
                      m_palette)
        .buildFaces(m_root, m_opaqueFaces, m_transparentFaces);
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
        m_palette.recolor(face, materialOf(face), selected);
    };
    m_opaqueFaces.forEach(recolor);
    m_transparentFaces.forEach(recolor);
    m_opaqueBuffer.setRecolored();
    m_transparentBuffer.setRecolored();
}

std::uint32_t OctreeSurface::materialOf(const QuadFace &face)
{
    return OctreeFaceBuilder::materialOf(face);
}

} // namespace Model::Automaton
