#pragma once

#include "Model/ModelExtraction/RectangularCuboidEnvelope.h"

namespace Model::Automaton {
class TotalVolume;
}

namespace Model::ModelExtraction {

/// Cuts a cell volume into boxes of one material. Made on the stack.
///
/// Each axis is cut at every plane across which the material of some cell differs from that of the
/// next one up the axis; cells in the last layer of an axis are not asked, not even for their
/// neighbours along the other two. The boxes between the cuts are found from seeds, beginning with
/// cell (0, 0, 0): from a seed a box grows along x, y and z to the next cut or to the end of the
/// volume, and where a cut stops it, the cell behind the cut is a seed, the one along x found first,
/// then y, then z. Seeds wait on a stack, each cell at most once. A box has the material of its
/// seed, whatever its other cells hold; a seed in empty space (material 0) leaves no box.
class CuboidDecomposer final
{
public:
    /// `volume` is not owned.
    explicit CuboidDecomposer(Automaton::TotalVolume *volume);

    /// Fills the list, anew with each call, and tells each box its neighbours: two boxes are
    /// neighbours if a face of the one is a face of the other, whole. Takes the volume's cell lock
    /// meanwhile. A volume without cells has no boxes.
    void run();

    /// The boxes in the order in which their seeds left the stack; shared, not copied.
    const EnvelopeList &envelopes() const { return m_envelopes; }

private:
    void findEnvelopes();
    void findNeighbours();

    Automaton::TotalVolume *m_volume;
    EnvelopeList m_envelopes;
};

} // namespace Model::ModelExtraction
