#pragma once

#include "Model/Automaton/CutLimits.h"
#include "Model/Automaton/MaterialPalette.h"
#include "Model/Automaton/OctreeBuilder.h"
#include "Model/Automaton/OctreeNode.h"
#include "Model/Geometry/FaceBuffer.h"
#include "Model/Geometry/FaceList.h"

#include <boost/shared_ptr.hpp>

#include <cstdint>

namespace Model::Materials {
class MaterialFactory;
}

namespace Model::Automaton {

class TotalVolume;

/// A picture of merged blocks: equal cells collapse into large leaves of an octree, and a quad is
/// drawn per leaf face that something looks at.
class OctreeSurface final
{
public:
    /// `volume` outlives the surface. Nothing of it is read before the first rebuild.
    explicit OctreeSurface(TotalVolume *volume);
    OctreeSurface(const OctreeSurface &) = delete;
    OctreeSurface &operator=(const OctreeSurface &) = delete;

    /// Builds the tree and the faces of the cut, lower inclusive, upper exclusive, on the calling
    /// thread. Takes the volume's cell lock. Needs no OpenGL context.
    ///
    /// The root lies at the lower limits; its size is the largest extent of the cut raised to a
    /// power of two, and 0 if the cut has no cells along any axis. A node is a leaf of a material
    /// if all its cells are in the cut and of that material, a leaf of material 0 if none is
    /// filled, and an inner node otherwise: this is the tree that inserting the filled cells one by
    /// one gives, with eight leaves of one material merged at once.
    ///
    /// The faces come leaf by leaf, children in number order. A leaf that is filled and has an
    /// alpha of 0.999 or more shows nothing through it. For any other leaf and each direction in
    /// order (see OctreeFaceBuilder), the neighbour of the leaf's own size, or the larger leaf
    /// there, gives its faces on the side that looks at the leaf. Last the root gives its outer
    /// faces, in the directions 1, 0, 3, 2, 5, 4, as if void were around it. An inner node gives
    /// the faces of its four children on that side, in number order, each with all below it. A leaf
    /// gives its whole face if its alpha is above 0.999, or if it is above 0.001 and what looks at
    /// it is void. So a large leaf gives its face once for every smaller leaf that looks at it:
    /// such duplicates stay.
    ///
    /// A face goes to the opaque list if the alpha is above 0.999. Its corners are those of the
    /// leaf, in cells, times the cell size of the axis, in 32-bit float. Both colours are that of
    /// the material in the registry; a material that it lacks looks like the empty material.
    void rebuild(const CellTriple &lower, const CellTriple &upper);

    /// Draws one of the two lists in one batch, and after it, if asked, the edges of the same list.
    void draw(bool showEdges, bool opaque);
    /// Gives the existing faces the present colours of their materials. If the volume is selected,
    /// highlights the colours that the faces have instead: doing so twice highlights twice.
    void refreshColors();

    const Geometry::FaceList &opaqueFaces() const { return m_opaqueFaces; }
    const Geometry::FaceList &transparentFaces() const { return m_transparentFaces; }
    const OctreeNode &root() const { return m_root; }

    /// The material id that a face of this surface keeps in its `voxel` field, in place of a cell.
    static std::uint32_t materialOf(const Geometry::QuadFace &face);

private:
    TotalVolume *m_volume;
    boost::shared_ptr<Materials::MaterialFactory> m_materials;
    MaterialPalette m_palette;
    Geometry::FaceList m_opaqueFaces;
    Geometry::FaceList m_transparentFaces;
    Geometry::FaceBuffer m_opaqueBuffer;
    Geometry::FaceBuffer m_transparentBuffer;
    OctreeNode m_root;
    OctreeBuilder m_builder;
};

} // namespace Model::Automaton
