#pragma once

#include "Model/Automaton/CutLimits.h"
#include "Model/Automaton/MaterialPalette.h"
#include "Model/Geometry/FaceList.h"

#include <array>
#include <cstdint>

namespace Model::Automaton {

class Voxel;

/// Builds one quad per visible cell face inside a cut, on the strips of the global thread pool.
///
/// The order of a list is x, then y, then z, then the face number, whatever the timing of the
/// strips. The builder reads cells and the palette and keeps nothing.
class DirectFaceBuilder final
{
public:
    /// All pointers and references must outlive the builder. `voxels` is the array of a volume
    /// with these sizes, whose lock the caller holds while a build runs. Limits beyond the volume
    /// end with it.
    DirectFaceBuilder(const Voxel *voxels, const CellTriple &sizes,
                      const std::array<float, 3> &cellSizes, const CutLimits &limits,
                      const MaterialPalette &palette);

    /// Appends the faces of the filled cells: those of opaque materials to the first list, those
    /// of transparent ones to the second. Blocks until all strips are done.
    void buildFaces(Geometry::FaceList &opaque, Geometry::FaceList &transparent) const;
    /// Appends all six faces of every void cell.
    void buildEmptyFaces(Geometry::FaceList &empty) const;

    /// Normal and corners of the six faces of a cell, by face number: z - 1, z + 1, y - 1, y + 1,
    /// x - 1, x + 1. A corner is an offset in cells, in drawing order.
    struct FaceShape
    {
        float normal[3];
        std::uint8_t corners[4][3];
    };
    static const std::array<FaceShape, 6> &faceShapes();

private:
    struct StripLists
    {
        Geometry::FaceList opaque;
        Geometry::FaceList transparent;
    };
    using StripFunction = void (DirectFaceBuilder::*)(std::uint32_t firstX, std::uint32_t endX,
                                                      Geometry::FaceList &opaque,
                                                      Geometry::FaceList &transparent,
                                                      const Voxel *voxels) const;

    /// A cut with fewer columns than threads is one strip, on this thread or on one of the pool.
    void runStrips(StripFunction strip, bool singleStripOnPool, Geometry::FaceList &opaque,
                   Geometry::FaceList &transparent) const;
    void faceStrip(std::uint32_t firstX, std::uint32_t endX, Geometry::FaceList &opaque,
                   Geometry::FaceList &transparent, const Voxel *voxels) const;
    void emptyFaceStrip(std::uint32_t firstX, std::uint32_t endX, Geometry::FaceList &empty,
                        Geometry::FaceList &unused, const Voxel *voxels) const;
    unsigned transparentFaces(const Voxel *cell, std::uint32_t x, std::uint32_t y,
                              std::uint32_t z) const;
    void appendFace(Geometry::FaceList &list, unsigned face, std::uint32_t x, std::uint32_t y,
                    std::uint32_t z, const Voxel *cell, const MaterialPalette::Color &color) const;

    const Voxel *m_voxels;
    CellTriple m_sizes;
    std::array<float, 3> m_cellSizes;
    CutLimits m_limits;
    const MaterialPalette &m_palette;
};

} // namespace Model::Automaton
