#pragma once

#include "Model/ModelExtraction/RectangularCuboidEnvelope.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace Model::Automaton {
class TotalVolume;
class Voxel;
} // namespace Model::Automaton

namespace Model::ModelExtraction {

/// Cuts a cell volume into boxes of one material. Made on the stack.
///
/// Each axis is cut at every plane across which the material of some cell differs from that of the
/// next one up the axis; cells in the last layer of an axis are not asked, not even for their
/// neighbours along the other two. The boxes between the cuts are found from seeds, beginning with
/// cell (0, 0, 0): from a seed a box grows along x, y and z to the next cut or to the end of the
/// volume. Where a cut stops it, the cell behind the cut is a seed; the seed along x is put on the
/// stack first, then the one along y, then the one along z. Each cell is a seed at most once. A box
/// has the material of its seed, whatever its other cells hold; a seed in empty space (material 0)
/// leaves no box.
class CuboidDecomposer final
{
public:
    /// `volume` is not owned.
    explicit CuboidDecomposer(Automaton::TotalVolume *volume);

    /// Fills the list, anew with each call, and tells each box its neighbours: two boxes are
    /// neighbours if a face of the one is a face of the other, whole. Takes the volume's cell lock
    /// meanwhile, and gives it back too if memory runs out, which throws std::bad_alloc. A volume
    /// without cells has no boxes, nor has one with more cells than 32 bits can count.
    void run();

    /// The boxes in the order in which their seeds left the stack; shared, not copied.
    const EnvelopeList &envelopes() const { return m_envelopes; }

private:
    /// A box by its number along x, y and z. Cuts go through the whole volume, so boxes stand in
    /// rows along each axis.
    using Place = std::array<std::size_t, 3>;

    void findCuts(const Automaton::Voxel *voxels);
    void findEnvelopes(const Automaton::Voxel *voxels);
    void findNeighbours();

    boost::shared_ptr<RectangularCuboidEnvelope> envelopeAt(const Place &place,
                                                            const Automaton::Voxel *voxels) const;
    std::size_t count(unsigned axis) const { return m_starts[axis].size() - 1; }
    std::size_t index(const Place &place) const
    {
        return (place[0] * count(1) + place[1]) * count(2) + place[2];
    }

    Automaton::TotalVolume *m_volume;
    EnvelopeList m_envelopes;
    /// Where boxes begin along each axis, ascending, and behind them the size of the volume.
    std::array<std::vector<std::uint32_t>, 3> m_starts;
    /// By index of the place; null for empty space. Not owned.
    std::vector<RectangularCuboidEnvelope *> m_placed;
};

} // namespace Model::ModelExtraction
