#pragma once

#include "Model/Geometry/DrawBuffer.h"

#include <QVector>

#include <cstdint>

namespace Model::Automaton {

class CutPlanes;
class SiAtom;
class SiLattice;
class TotalVolume;

/// Draws the silicon crystal of a volume over its surface: atoms as small spheres, bonds as lines,
/// unit cells as boxes or wire frames. Nothing is drawn before the volume has a crystal.
///
/// Links and outlines show the crystal as it was when they were built, atoms as it is. Belongs to
/// the thread that owns the OpenGL context; the draws read atoms without a lock, which is only
/// right while no process runs.
class AtomicRenderer final
{
public:
    /// Owns neither; both outlive the renderer.
    AtomicRenderer(TotalVolume *volume, const CutPlanes *cutPlanes);
    /// Deletes its buffers if their context is current; without it they go with the context.
    ~AtomicRenderer();
    AtomicRenderer(const AtomicRenderer &) = delete;
    AtomicRenderer &operator=(const AtomicRenderer &) = delete;

    /// Without a context these switch off what they would build.
    void buildUnitCells();
    void buildAtoms();

    void drawOpaque() const;
    void drawTransparent() const;

    /// What is switched on shows after the next build; atoms at once when their sphere exists.
    bool renderUnitCells() const { return m_renderUnitCells; }
    void setRenderUnitCells(bool render) { m_renderUnitCells = render; }
    bool renderOutlines() const { return m_renderOutlines; }
    void setRenderOutlines(bool render) { m_renderOutlines = render; }
    bool renderAtoms() const { return m_renderAtoms; }
    void setRenderAtoms(bool render) { m_renderAtoms = render; }
    bool surfaceAtomsOnly() const { return m_surfaceAtomsOnly; }
    void setSurfaceAtomsOnly(bool only) { m_surfaceAtomsOnly = only; }
    bool renderLinks() const { return m_renderLinks; }
    void setRenderLinks(bool render) { m_renderLinks = render; }

    /// Three floats a vertex. 36 vertices of the triangles of one box, at the world's origin.
    const QVector<float> &unitCellVertices() const { return m_unitCellVertices; }
    /// 24 vertices a unit cell, four a loop.
    const QVector<float> &outlineVertices() const { return m_outlineVertices; }
    /// The triangles of a sphere at the origin; behind all positions the normals.
    const QVector<float> &atomMesh() const { return m_atomMesh; }
    /// Two vertices a line.
    const QVector<float> &linkVertices() const { return m_linkVertices; }
    /// OpenGL names, 0 for none.
    std::uint32_t outlineBuffer() const { return m_outlineBuffer.name(); }
    std::uint32_t unitCellBuffer() const { return m_unitCellBuffer.name(); }
    std::uint32_t atomBuffer() const { return m_atomBuffer.name(); }
    std::uint32_t linkBuffer() const { return m_linkBuffer.name(); }

private:
    void buildOutlines(const SiLattice &lattice);
    void buildLinks(const SiLattice &lattice);
    bool isCutAway(const SiAtom &atom) const;
    void drawAtoms(SiLattice &lattice) const;
    void drawSphere(const SiAtom &atom) const;
    void drawOutlines() const;

    TotalVolume *m_volume;
    const CutPlanes *m_cutPlanes;
    QVector<float> m_unitCellVertices;
    QVector<float> m_outlineVertices;
    QVector<float> m_atomMesh;
    QVector<float> m_linkVertices;
    bool m_renderUnitCells = false;
    bool m_renderOutlines = false;
    bool m_renderAtoms = false;
    bool m_surfaceAtomsOnly = true;
    bool m_renderLinks = false;
    Geometry::DrawBuffer m_outlineBuffer;
    Geometry::DrawBuffer m_unitCellBuffer;
    Geometry::DrawBuffer m_atomBuffer;
    Geometry::DrawBuffer m_linkBuffer;
};

} // namespace Model::Automaton
