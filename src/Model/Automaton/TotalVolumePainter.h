#pragma once

#include "Model/Automaton/AtomicRenderer.h"
#include "Model/Automaton/CutLimits.h"
#include "Model/Automaton/CutPlanes.h"
#include "Model/Automaton/MarchingCubeSurface.h"
#include "Model/Automaton/MaterialPalette.h"
#include "Model/Automaton/OctreeSurface.h"
#include "Model/Geometry/DrawBuffer.h"
#include "Model/Geometry/FaceBuffer.h"
#include "Model/Geometry/FaceList.h"

#include <QMutex>
#include <QPointer>

#include <boost/shared_ptr.hpp>

#include <cstddef>
#include <cstdint>
#include <vector>

class QOpenGLContextGroup;

namespace Model::Materials {
class MaterialFactory;
}

namespace Model::Automaton {

class TotalVolume;

/// Turns the cells of one volume into what the 3D view draws. Built with its volume and gone with
/// it. Whoever changes the cells calls rebuild(); draw() never rebuilds geometry.
///
/// Construction, destruction, rebuild() and the draws expect a current OpenGL context on the
/// calling thread; without one their OpenGL calls have no effect.
class TotalVolumePainter final
{
public:
    enum SurfaceAlgorithm : std::uint32_t
    {
        DirectCubic = 0,
        MarchingCubes = 1,
        Octree = 2
    };

    /// `volume` owns the painter; its sizes and cell sizes are set already.
    explicit TotalVolumePainter(TotalVolume *volume);
    ~TotalVolumePainter();
    TotalVolumePainter(const TotalVolumePainter &) = delete;
    TotalVolumePainter &operator=(const TotalVolumePainter &) = delete;

    /// Rebuilds every picture. Takes the volume's cell lock; blocks until the strips are done.
    void rebuild();
    /// Gives the existing faces the present colours of their materials, highlighted if the volume
    /// is selected.
    void refreshColors();
    /// Draws at the volume's position. May leave the modelview stack changed, see the source.
    void draw(bool showSolids, bool showEdges);
    /// Draws the volume's whole box as one pick target, whatever the cut.
    void drawForPicking() const;

    /// Cells; upper is exclusive. Limits with a lower one that is not below its upper one show
    /// nothing. Limits beyond the volume are kept as they are given, and every surface and the
    /// outlines of void cells end at the volume. Builds nothing. The planes take the numbers as
    /// world coordinates, which fits a volume at the origin with cells of edge 1.
    void setCutLimits(const CellTriple &lower, const CellTriple &upper);
    void cutLimits(CellTriple &lower, CellTriple &upper) const;

    void setHidden(bool hidden) { m_hidden = hidden; }
    void setShowEmptyVoxels(bool show) { m_showEmptyVoxels = show; }
    bool showEmptyVoxels() const { return m_showEmptyVoxels; }

    /// A different value rebuilds the direct faces at once; the chosen surface itself is built by
    /// the next rebuild().
    void setSurfaceAlgorithm(std::uint32_t algorithm);
    std::uint32_t surfaceAlgorithm() const { return m_surfaceAlgorithm; }

    /// The five options of the atomistic picture; what is switched on shows after the next
    /// rebuild().
    bool renderUnitCells() const { return m_atomicRenderer.renderUnitCells(); }
    void setRenderUnitCells(bool render) { m_atomicRenderer.setRenderUnitCells(render); }
    bool renderOutlines() const { return m_atomicRenderer.renderOutlines(); }
    void setRenderOutlines(bool render) { m_atomicRenderer.setRenderOutlines(render); }
    bool renderAtoms() const { return m_atomicRenderer.renderAtoms(); }
    void setRenderAtoms(bool render) { m_atomicRenderer.setRenderAtoms(render); }
    bool surfaceAtomsOnly() const { return m_atomicRenderer.surfaceAtomsOnly(); }
    void setSurfaceAtomsOnly(bool only) { m_atomicRenderer.setSurfaceAtomsOnly(only); }
    bool renderLinks() const { return m_atomicRenderer.renderLinks(); }
    void setRenderLinks(bool render) { m_atomicRenderer.setRenderLinks(render); }

    const MarchingCubeSurface &marchingCubes() const { return m_marchingCubes; }
    const OctreeSurface &octree() const { return m_octree; }
    const CutPlanes &cutPlanes() const { return m_cutPlanes; }
    const AtomicRenderer &atomicRenderer() const { return m_atomicRenderer; }

    const Geometry::FaceList &opaqueFaces() const { return m_opaqueFaces; }
    const Geometry::FaceList &transparentFaces() const { return m_transparentFaces; }
    const Geometry::FaceList &emptyFaces() const { return m_emptyFaces; }

private:
    void rebuildDirectFaces();
    void rebuildEmptyFaces();
    void reloadColors();
    void drawSurface(bool showEdges);
    void drawDirectEdges();
    void drawTransparentPass();
    void drawMasks();
    void uploadMasks();
    void appendMask(const std::vector<bool> &bits, std::uint32_t width, std::uint32_t height,
                    float layer, std::vector<float> &vertices) const;

    boost::shared_ptr<Materials::MaterialFactory> m_materials;
    TotalVolume *m_volume;
    bool m_showEmptyVoxels = false;
    bool m_hidden = false;
    /// The selection state that the colours show.
    bool m_wasSelected;
    std::uint32_t m_surfaceAlgorithm = DirectCubic;
    unsigned m_displayList;
    /// The contexts that know the list.
    QPointer<QOpenGLContextGroup> m_displayListOwners;
    float m_cellSizeX;
    float m_cellSizeY;
    float m_cellSizeZ;
    mutable QMutex m_limitsMutex;
    CutLimits m_limits;
    CutPlanes m_cutPlanes;
    MarchingCubeSurface m_marchingCubes;
    OctreeSurface m_octree;
    AtomicRenderer m_atomicRenderer;
    MaterialPalette m_palette;
    Geometry::FaceList m_opaqueFaces;
    Geometry::FaceList m_transparentFaces;
    Geometry::FaceList m_emptyFaces;
    Geometry::FaceBuffer m_opaqueBuffer;
    Geometry::FaceBuffer m_transparentBuffer;
    Geometry::FaceBuffer m_emptyBuffer;
    /// Both masks, as they were at this revision of the volume's masks.
    Geometry::DrawBuffer m_maskBuffer;
    std::size_t m_maskVertices = 0;
    std::uint32_t m_drawnMasks = 0;
};

} // namespace Model::Automaton
