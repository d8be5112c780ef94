#pragma once

#include "Model/Automaton/CutLimits.h"
#include "Model/Automaton/MaterialPalette.h"
#include "Model/Automaton/TriangleList.h"
#include "Model/Geometry/DrawBuffer.h"

#include <QMutex>

#include <boost/shared_ptr.hpp>

#include <cstdint>
#include <utility>
#include <vector>

namespace Model::Materials {
class MaterialFactory;
}

namespace Model::Automaton {

class TotalVolume;
struct MarchingCubeGrid;

/// A smooth skin around the filled cells of a volume, by marching cubes over the cells' materials
/// taken as filled or void. Materials that touch have no border between them, and every material is
/// drawn opaque.
///
/// A cube has its eight corners at cells (see MarchingCubeTables for their order): corner 3 at
/// (x, y, z), corner 5 at (x + 1, y + 1, z + 1). A corner (cx, cy, cz) has the material of that
/// cell if on every axis it lies above the lower limit, not above the upper one and below the
/// volume's size; it is void otherwise. So the lowest cells of the cut are always void and those at
/// the upper limit are still filled, unlike the direct faces: every open side has a lid. A cell
/// whose index is negative as a signed 32-bit number is void too.
class MarchingCubeSurface final
{
public:
    /// `volume` outlives the surface; its sizes and cell sizes are set already. Nothing else of it
    /// is read before the first rebuild.
    explicit MarchingCubeSurface(TotalVolume *volume);
    MarchingCubeSurface(const MarchingCubeSurface &) = delete;
    MarchingCubeSurface &operator=(const MarchingCubeSurface &) = delete;

    /// Builds the surface within the cut. Takes the volume's cell lock and blocks until the strips
    /// on the global pool are done: as many as it has threads, along x, or one on this thread if
    /// the cut has fewer columns than that. Needs no OpenGL context.
    ///
    /// The triangles come cube by cube, for x, then y, then z, in the order of the table's row,
    /// whatever the number of strips. A vertex is the plain midpoint (a + b) * 0.5 of the corners
    /// of its edge, a corner being its cell numbers times the cell sizes, each in 32-bit float; its
    /// material is that of the edge's first corner, or of the second if the first is void. The
    /// normal of a triangle p0 p1 p2 before smoothing is (p1 - p0) x (p2 - p0) divided by its
    /// length, all in 32-bit float: each component a * b - c * d, the squared length summed as
    /// x, y, z, each component divided by the root.
    ///
    /// Smoothing: vertices with equal keys form a group, the key being
    /// (sizeY * ix + iy) * sizeZ + iz in unsigned 32-bit arithmetic, where ix is the vertex's x
    /// divided by the cell size along x in 32-bit float and rounded to the nearest integer, halves
    /// upward, iy the same for y, and iz its z divided by the cell size along y. (The size along z
    /// stays out of it: pictures made so far rely on the groups.) The sum of a group starts with
    /// the normal of its first vertex, and each later one adds its own in the order of the list.
    /// The sum divided by one less than the number of vertices, and then by its own squared length,
    /// is the normal of all of them. So a vertex with a group of its own ends with a normal that is
    /// not finite.
    void rebuild(const CellTriple &lower, const CellTriple &upper);

    /// Draws the triangles in one batch, each vertex in the present colour of its material,
    /// highlighted if the volume is selected, so that neither needs a rebuild. Materials that the
    /// registry lacks have the empty material's colour on purpose: they look as they do in the
    /// other surfaces, whatever was drawn before them. The alpha of a colour is not used, and the
    /// surface has no edges to show: the flag has no effect.
    void draw(bool showEdges);

    const TriangleList &triangles() const { return m_triangles; }

private:
    /// What the vertices are coloured by.
    struct Coloring
    {
        bool isHighlighted = false;
        std::vector<std::pair<std::uint32_t, MaterialPalette::Color>> materials;

        bool operator==(const Coloring &other) const
        {
            return isHighlighted == other.isHighlighted && materials == other.materials;
        }
    };

    void buildTriangles(const MarchingCubeGrid &grid);
    /// False if there is nothing to draw from.
    bool updateBuffers();
    void uploadColors(const std::vector<Materials::Material> &materials);

    TotalVolume *m_volume;
    boost::shared_ptr<Materials::MaterialFactory> m_materials;
    std::uint32_t m_sizeX;
    std::uint32_t m_sizeY;
    std::uint32_t m_sizeZ;
    TriangleList m_triangles;
    Geometry::DrawBuffer m_vertexBuffer;
    Geometry::DrawBuffer m_colorBuffer;
    bool m_areBuffersStale = true;
    /// What the colour buffer was filled by.
    Coloring m_coloring;
    /// One build or draw at a time.
    QMutex m_mutex;
};

} // namespace Model::Automaton
