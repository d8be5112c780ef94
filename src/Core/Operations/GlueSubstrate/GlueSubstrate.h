#pragma once

#include "Model/Automaton/Voxel.h"

#include <cstdint>
#include <vector>

namespace Model::Automaton {
class TotalVolume;
}

namespace Core::Operations {

/// Where the bodies of two cell volumes lie, and what one volume for both needs. A body is all
/// cells whose material is not 0. All in cells.
struct GlueMeasures
{
    /// Layers of z up to the highest filled cell of the base, that one included; 1 for an empty
    /// base, whatever its size.
    std::uint32_t baseHeight = 1;
    /// The layer of the lowest filled cell of the top; the top's size along z if it is empty.
    std::uint32_t topLowest = 0;
    /// Layers up to the highest filled cell of the top, that one included; 1 for an empty top.
    std::uint32_t topHeight = 1;
    /// The smallest sizes of the glued volume: the larger of both along x and y; along z the base's
    /// height and the layers of the top's body. This sum wraps, in 32 bits, for an empty top of
    /// more than baseHeight + 1 layers.
    std::uint32_t minimumX = 0;
    std::uint32_t minimumY = 0;
    std::uint32_t minimumZ = 0;
    /// How far the top can be moved inside the smallest sizes; 0 where it is the larger one.
    std::uint32_t maximumDisplacementX = 0;
    std::uint32_t maximumDisplacementY = 0;
    /// The top has no filled cell: there is nothing to glue.
    bool topEmpty = true;
};

/// What the user chooses about a glued volume, in cells.
struct GlueChoices
{
    std::uint32_t finalX = 0;
    std::uint32_t finalY = 0;
    std::uint32_t finalZ = 0;
    /// Where the top's x and y start.
    std::uint32_t displacementX = 0;
    std::uint32_t displacementY = 0;
    /// The top is turned over, by half a turn about the y axis: x and z reverse, y stays.
    bool invertTop = false;
};

/// Puts the cells of two volumes into one: those of the base at the low corner as they are, and the
/// body of the top directly upon the highest filled layer of the base. Where the volumes are in the
/// world plays no part. Reads `voxels` of both and changes neither.
class GlueSubstrate final
{
public:
    /// Walks the cells of one volume after the other, with `voxels` of that volume taken, in strips
    /// of x on the global thread pool. Both may be the same volume, and any of their sizes may be
    /// 0. One that has more cells than 32 bits can count is taken as empty.
    static GlueMeasures measure(Model::Automaton::TotalVolume &base,
                                Model::Automaton::TotalVolume &top);

    /// `measures` are those of the two volumes with the cells that they have now. The volumes are
    /// not owned; their cells are not touched yet.
    GlueSubstrate(Model::Automaton::TotalVolume *base, Model::Automaton::TotalVolume *top,
                  const GlueMeasures &measures, const GlueChoices &choices);

    /// The glued volume's number of cells has 32 bits, and it and the two volumes fit into the
    /// memory of the machine together.
    bool fits() const;

    /// The material ids of the glued volume, finalX * finalY * finalZ of them in index order, 0
    /// where nothing was copied to:
    /// - base (x, y, z), for z below the base's height, stands at (x, y, z);
    /// - top (x, y, z), for z from the lowest to the highest layer of the top's body, stands at
    ///   (displacementX + x, displacementY + y, baseHeight + z - topLowest), and inverted at
    ///   (displacementX + topSizeX - 1 - x, displacementY + y, baseHeight + topHeight - 1 - z).
    ///   Its empty cells between are copied as well, so hollows stay.
    /// What lies beyond the final sizes is cut off; an empty top adds nothing. Copies nothing but
    /// material ids: no masks, no crystal, no atoms.
    ///
    /// Runs to the end, in strips of x on the global thread pool; on the calling thread if a strip
    /// of either volume would have less than two layers. Both `voxels` are held throughout: the two
    /// volumes must differ. Called once, and only if fits() is true. Throws std::bad_alloc where
    /// the platform refuses the memory, with both arrays given back.
    std::vector<std::uint32_t> glue();

private:
    /// Copies the strip of that number from the base, then from the top. No two workers write the
    /// same cell, also where one is at the top while another is at the base: one stays below the
    /// base's height, the other at or above it.
    void worker(std::uint32_t thread);
    void copyBase(std::uint32_t start, std::uint32_t end);
    void copyTop(std::uint32_t start, std::uint32_t end);

    Model::Automaton::TotalVolume *m_base;
    Model::Automaton::TotalVolume *m_top;
    GlueMeasures m_measures;
    GlueChoices m_choices;
    std::uint32_t m_baseX;
    std::uint32_t m_baseY;
    std::uint32_t m_baseZ;
    std::uint32_t m_topX;
    std::uint32_t m_topY;
    std::uint32_t m_topZ;
    const Model::Automaton::Voxel *m_baseVoxels = nullptr;
    const Model::Automaton::Voxel *m_topVoxels = nullptr;
    std::vector<std::uint32_t> m_ids;
    std::uint32_t m_threads = 1;
};

} // namespace Core::Operations
