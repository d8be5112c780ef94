#pragma once

#include "Model/ModelExtraction/IModelRule.h"
#include "Model/ModelExtraction/RectangularCuboidEnvelope.h"

namespace Model::ModelExtraction {

/// Finds beams that are held at one end.
///
/// A tip is a box that is not silicon and has exactly one neighbour, which is on a side and neither
/// above nor below. From the tip the beam goes on through its neighbour and on in the same
/// direction, as long as a box has the material of the tip, exactly two neighbours, and one of them
/// in that direction; so it ends before the root and before any other material.
class CantileverModelRule final : public IModelRule
{
public:
    /// A CantileverStructure of the beams; empty if there is none.
    boost::shared_ptr<IStructure> extract(const ExtractedModel &model) override;

    /// The boxes of silicon that extract() saw last, in the order of the model.
    EnvelopeList anchors() const { return m_anchors; }
    /// The beams that extract() found last, in the order of their tips. They are boxes of their
    /// own, without neighbours.
    ///
    /// A beam begins with the corner and the extents of its tip. Each further box adds to each
    /// extent the distance, on that axis, between its corner and the beam's corner so far; then the
    /// lower of the two becomes the beam's corner. Along a rising axis the distance is thus always
    /// taken from the tip, so that three boxes of length 2 give 2 + 2 + 4; netlists rely on it.
    EnvelopeList beams() const { return m_beams; }

private:
    EnvelopeList m_anchors;
    EnvelopeList m_beams;
};

} // namespace Model::ModelExtraction
