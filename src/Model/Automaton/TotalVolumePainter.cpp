#include "Model/Automaton/TotalVolumePainter.h"

#include "Model/Automaton/DirectFaceBuilder.h"
#include "Model/Automaton/TakenCells.h"
#include "Model/Automaton/TotalVolume.h"
#include "Model/Automaton/Voxel.h"
#include "Model/Geometry/DrawState.h"
#include "Model/Materials/MaterialFactory.h"

#include <QMutexLocker>
#include <QOpenGLContext>

#include <GL/gl.h>

#include <algorithm>
#include <array>

namespace Model::Automaton {

using Geometry::DrawBuffer;
using Geometry::FaceBuffer;
using Geometry::QuadFace;

namespace {

/// The masks float this many layers of cells below and above the volume.
constexpr float MaskGap = 5.0f;

} // namespace

TotalVolumePainter::TotalVolumePainter(TotalVolume *volume)
    : m_materials(Materials::MaterialFactory::instance()),
      m_volume(volume),
      m_wasSelected(!volume->isSelected()),
      m_displayList(glGenLists(1)),
      m_displayListOwners(QOpenGLContextGroup::currentContextGroup()),
      m_cellSizeX(volume->cellSizeX()),
      m_cellSizeY(volume->cellSizeY()),
      m_cellSizeZ(volume->cellSizeZ()),
      m_marchingCubes(volume),
      m_octree(volume),
      m_atomicRenderer(volume, &m_cutPlanes)
{
    setCutLimits({0, 0, 0}, {volume->sizeX(), volume->sizeY(), volume->sizeZ()});
}

TotalVolumePainter::~TotalVolumePainter()
{
    // Another window may have a list of its own under the same name.
    if (m_displayListOwners && m_displayListOwners == QOpenGLContextGroup::currentContextGroup())
        glDeleteLists(m_displayList, 1);
}

void TotalVolumePainter::rebuild()
{
    rebuildDirectFaces();
    if (m_surfaceAlgorithm == Octree)
        m_octree.rebuild(m_limits.lower, m_limits.upper);
    if (m_surfaceAlgorithm == MarchingCubes)
        m_marchingCubes.rebuild(m_limits.lower, m_limits.upper);
    if (m_showEmptyVoxels)
        rebuildEmptyFaces();
    m_atomicRenderer.buildUnitCells();
    m_atomicRenderer.buildAtoms();
}

void TotalVolumePainter::rebuildDirectFaces()
{
    m_opaqueFaces.clear();
    m_transparentFaces.clear();
    reloadColors();
    m_opaqueBuffer.setChanged();
    m_transparentBuffer.setChanged();
    const TakenCells voxels(*m_volume);
    DirectFaceBuilder(voxels.cells(), {m_volume->sizeX(), m_volume->sizeY(), m_volume->sizeZ()},
                      {m_cellSizeX, m_cellSizeY, m_cellSizeZ}, m_limits, m_palette)
        .buildFaces(m_opaqueFaces, m_transparentFaces);
}

void TotalVolumePainter::rebuildEmptyFaces()
{
    m_emptyFaces.clear();
    m_emptyBuffer.setChanged();
    const TakenCells voxels(*m_volume);
    DirectFaceBuilder(voxels.cells(), {m_volume->sizeX(), m_volume->sizeY(), m_volume->sizeZ()},
                      {m_cellSizeX, m_cellSizeY, m_cellSizeZ}, m_limits, m_palette)
        .buildEmptyFaces(m_emptyFaces);
}

void TotalVolumePainter::reloadColors()
{
    m_palette.reload(m_materials->materials());
}

void TotalVolumePainter::refreshColors()
{
    if (m_surfaceAlgorithm == Octree)
        m_octree.refreshColors();
    if (m_surfaceAlgorithm != DirectCubic)
        return;
    reloadColors();
    // A selected volume's faces are highlighted as they are: doing so twice highlights twice.
    const bool selected = m_volume->isSelected();
    const auto recolor = [&](QuadFace &face) {
        m_palette.recolor(face, face.voxel->material(), selected);
    };
    m_opaqueFaces.forEach(recolor);
    m_transparentFaces.forEach(recolor);
    m_opaqueBuffer.setRecolored();
    m_transparentBuffer.setRecolored();
}

void TotalVolumePainter::draw(bool showSolids, bool showEdges)
{
    if (m_hidden)
        return;
    if (m_wasSelected != m_volume->isSelected()) {
        m_wasSelected = !m_wasSelected;
        refreshColors();
    }
    const Util::Vector3D position = m_volume->position();
    glPushMatrix();
    glTranslated(position[0], position[1], position[2]);
    // Without solids the matrix stays pushed; whoever walks the objects restores it.
    if (!showSolids)
        return;
    drawSurface(showEdges);
    drawTransparentPass();
}

void TotalVolumePainter::drawSurface(bool showEdges)
{
    if (m_surfaceAlgorithm == MarchingCubes) {
        m_marchingCubes.draw(showEdges);
        // The masks come twice with this surface: here in place, and once more, not translated, in
        // the pass that follows and that pops a second time.
        Geometry::pushTransparentState();
        drawMasks();
        glPopAttrib();
        glPopMatrix();
    } else if (m_surfaceAlgorithm == DirectCubic) {
        m_atomicRenderer.drawOpaque();
        m_opaqueBuffer.draw(m_opaqueFaces, FaceBuffer::Fill);
        if (showEdges)
            drawDirectEdges();
    } else if (m_surfaceAlgorithm == Octree) {
        m_octree.draw(showEdges, true);
    }
}

void TotalVolumePainter::drawDirectEdges()
{
    Geometry::pushEdgeState();
    m_opaqueBuffer.draw(m_opaqueFaces, FaceBuffer::Edge);
    m_transparentBuffer.draw(m_transparentFaces, FaceBuffer::Edge);
    if (m_showEmptyVoxels)
        m_emptyBuffer.draw(m_emptyFaces, FaceBuffer::Edge);
    glPopAttrib();
}

void TotalVolumePainter::drawTransparentPass()
{
    Geometry::pushTransparentState();
    m_atomicRenderer.drawTransparent();
    if (m_surfaceAlgorithm == DirectCubic)
        m_transparentBuffer.draw(m_transparentFaces, FaceBuffer::Fill);
    else if (m_surfaceAlgorithm == Octree)
        m_octree.draw(false, false);
    drawMasks();
    glPopAttrib();
    glPopMatrix();
}

void TotalVolumePainter::drawMasks()
{
    if (!DrawBuffer::isContextCurrent())
        return;
    if (m_drawnMasks != m_volume->maskRevision() || m_maskBuffer.name() == 0)
        uploadMasks();
    glDisable(GL_CULL_FACE);
    glColor4f(0.2f, 0.8f, 0.2f, 0.3f);
    // Level, so that a mask has one shade whatever was drawn before it.
    glNormal3f(0.0f, 0.0f, 1.0f);
    if (m_maskVertices != 0 && m_maskBuffer.bind()) {
        glVertexPointer(3, GL_FLOAT, 0, DrawBuffer::place(0));
        glEnableClientState(GL_VERTEX_ARRAY);
        glDrawArrays(GL_QUADS, 0, static_cast<GLsizei>(m_maskVertices));
        glDisableClientState(GL_VERTEX_ARRAY);
        DrawBuffer::unbind();
    }
    glEnable(GL_CULL_FACE);
}

void TotalVolumePainter::uploadMasks()
{
    std::vector<float> vertices;
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    m_volume->bottomMaskExtent(width, height);
    appendMask(m_volume->bottomMask(), width, height, -MaskGap, vertices);
    m_volume->topMaskExtent(width, height);
    appendMask(m_volume->topMask(), width, height, static_cast<float>(m_volume->sizeZ()) + MaskGap,
               vertices);
    m_maskBuffer.upload(vertices.data(), vertices.size() * sizeof(float));
    m_maskVertices = vertices.size() / 3;
    m_drawnMasks = m_volume->maskRevision();
}

void TotalVolumePainter::appendMask(const std::vector<bool> &bits, std::uint32_t width,
                                    std::uint32_t height, float layer,
                                    std::vector<float> &vertices) const
{
    const float z = layer * m_cellSizeZ;
    const std::uint32_t endX = std::min(width, m_volume->sizeX());
    const std::uint32_t endY = std::min(height, m_volume->sizeY());
    for (std::uint32_t x = 0; x < endX; ++x) {
        for (std::uint32_t y = 0; y < endY; ++y) {
            const std::size_t bit = std::size_t{x} * height + y;
            if (bit >= bits.size() || !bits[bit])
                continue;
            const float x0 = static_cast<float>(x) * m_cellSizeX;
            const float x1 = static_cast<float>(x + 1) * m_cellSizeX;
            const float y0 = static_cast<float>(y) * m_cellSizeY;
            const float y1 = static_cast<float>(y + 1) * m_cellSizeY;
            vertices.insert(vertices.end(), {x0, y0, z, x1, y0, z, x1, y1, z, x0, y1, z});
        }
    }
}

void TotalVolumePainter::drawForPicking() const
{
    const float edges[3] = {static_cast<float>(m_volume->sizeX()) * m_cellSizeX,
                            static_cast<float>(m_volume->sizeY()) * m_cellSizeY,
                            static_cast<float>(m_volume->sizeZ()) * m_cellSizeZ};
    const Util::Vector3D position = m_volume->position();
    glPushMatrix();
    glTranslated(position[0], position[1], position[2]);
    glBegin(GL_QUADS);
    for (const DirectFaceBuilder::FaceShape &shape : DirectFaceBuilder::faceShapes())
        for (const std::uint8_t(&corner)[3] : shape.corners)
            glVertex3f(static_cast<float>(corner[0]) * edges[0],
                       static_cast<float>(corner[1]) * edges[1],
                       static_cast<float>(corner[2]) * edges[2]);
    glEnd();
    glPopMatrix();
}

void TotalVolumePainter::setCutLimits(const CellTriple &lower, const CellTriple &upper)
{
    const QMutexLocker lock(&m_limitsMutex);
    m_limits = {lower, upper};
    m_cutPlanes.clear();
    for (unsigned axis = 0; axis < 3; ++axis) {
        std::array<float, 3> outward{};
        outward[axis] = -1.0f;
        m_cutPlanes.add(outward[0], outward[1], outward[2], static_cast<float>(lower[axis]));
        outward[axis] = 1.0f;
        m_cutPlanes.add(outward[0], outward[1], outward[2], -static_cast<float>(upper[axis]));
    }
}

void TotalVolumePainter::cutLimits(CellTriple &lower, CellTriple &upper) const
{
    const QMutexLocker lock(&m_limitsMutex);
    lower = m_limits.lower;
    upper = m_limits.upper;
}

void TotalVolumePainter::setSurfaceAlgorithm(std::uint32_t algorithm)
{
    if (algorithm == m_surfaceAlgorithm)
        return;
    m_surfaceAlgorithm = algorithm;
    rebuildDirectFaces();
}

} // namespace Model::Automaton
