#pragma once

#include "Model/ModelExtraction/RectangularCuboidEnvelope.h"
#include "Model/Object.h"

#include <array>
#include <cstdint>
#include <vector>

namespace Model::ModelExtraction {

/// A document object that shows boxes of cells in the colours of a palette of 14, one box after the
/// other. It is shown as long as an extraction runs; it is neither copied nor saved.
class ExtractedModel final : public Object
{
public:
    /// Shares the boxes, which do not change any more.
    explicit ExtractedModel(EnvelopeList envelopes);

    std::uint32_t objectType() const override;
    /// Draws solids and outlines, whatever the view shows of other objects.
    void draw(bool renderObjects, bool renderEdges) override;
    /// The same picture where it was before any translate().
    void drawForPicking() override;
    /// Null: a model cannot be copied.
    ExtractedModel *clone() override;
    /// Drawing units.
    void translate(const Util::Vector3D &offset) override;
    void unusedVectorPair(const Util::Vector3D &first, const Util::Vector3D &second) override;

    const EnvelopeList &envelopes() const { return m_envelopes; }
    /// The sum of all translations, along x, y and z.
    const std::array<float, 3> &offset() const { return m_offset; }

private:
    void drawEnvelopes();

    EnvelopeList m_envelopes;
    /// The next entry of the palette.
    std::int32_t m_colorIndex = 0;
    std::array<float, 3> m_offset{};
    /// Corners and normals of six quads a box, three floats a corner.
    std::vector<float> m_vertices;
    std::vector<float> m_normals;
};

} // namespace Model::ModelExtraction
