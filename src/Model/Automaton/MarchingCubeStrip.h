#pragma once

#include "Model/Automaton/CutLimits.h"
#include "Model/Automaton/Triangle.h"
#include "Model/Automaton/VertexLattice.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace Model::Automaton {

class Voxel;

/// What all strips of a build read. All of it outlives the strips.
struct MarchingCubeGrid
{
    const Voxel *voxels;
    CellTriple sizes;
    CutLimits limits;
    const VertexLattice &lattice;
};

/// The marching cubes of a range of x. First its corners are read, which tells how many triangles
/// there are, and then these are written to where the caller wants them.
class MarchingCubeStrip final
{
public:
    /// Cubes from firstX to endX, exclusive, in cells.
    MarchingCubeStrip(const MarchingCubeGrid &grid, std::uint32_t firstX, std::uint32_t endX);

    void readCorners();
    std::size_t triangleCount() const { return m_triangleCount; }
    /// Writes triangleCount() triangles with their own normals, and in `shared` the key of each
    /// vertex for the smoothing.
    void writeTriangles(Triangle *triangles) const;

private:
    using Word = std::uint64_t;

    void readPlane(std::uint32_t x, Word *plane) const;
    /// Calls visit(x, y, z, case) for each cube that is neither filled nor void, in order.
    template <typename Visitor>
    void forEachMixedCube(Visitor &&visit) const;

    const MarchingCubeGrid &m_grid;
    std::uint32_t m_firstX;
    std::uint32_t m_endX;
    /// Last cubes of y and z, inclusive. The first ones are at the lower limits.
    std::uint32_t m_lastY = 0;
    std::uint32_t m_lastZ = 0;
    std::size_t m_rows = 0;
    std::size_t m_words = 0;
    std::size_t m_triangleCount = 0;
    /// A bit a corner, set if filled: planes of x, in them rows of y, in these words along z.
    std::vector<Word> m_corners;
};

} // namespace Model::Automaton
