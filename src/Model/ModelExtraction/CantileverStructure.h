#pragma once

#include "Model/ModelExtraction/IStructure.h"
#include "Model/ModelExtraction/RectangularCuboidEnvelope.h"

#include <cstdint>
#include <vector>

namespace Model::ModelExtraction {

/// Beams as lumped resonators: the mass of a beam becomes a capacitance, its compliance an
/// inductance, each between a node of its own, counted from 1, and node 0.
class CantileverStructure final : public IStructure
{
public:
    /// Shares the beams.
    explicit CantileverStructure(EnvelopeList envelopes);

    /// A banner line, a line "c1 1 0 <value> " and a line "l1 1 0 <value> " a beam, and ".end ".
    /// Every line but the banner has a blank before its newline. Values have six significant
    /// digits; "inf", "-inf" and "nan" occur.
    ///
    /// For a beam of a by b by c cells (width, depth, height), L the larger of a and b and w the
    /// smaller: C = (c b a) * cellVolume * density * 33 / 140 from left to right, and the
    /// inductance is 1 / stiffness with stiffness = modulus * 3 * ((c^3 w) / 12) / (L^3), after
    /// 3 E I / L^3 and I = w t^3 / 12 for a bar under a load at its end. Products of cell counts
    /// are 32-bit integers and wrap, then count as signed. Lengths stay in cells.
    ///
    /// Densities by material id: 2329, 2700, 8940, 8908, 2648, 2810 for 1 to 6 and 1000 for 7 to
    /// 15, in kg per cubic metre; the modulus is 70e9 Pa for all of them, silicon included. The
    /// registry of materials has no part in it. Id 0 and ids above 15 have density and modulus 0.
    QString netlist() const override;

    /// The material ids above 15 among the beams, for which the tables have no values. Ascending,
    /// each once.
    std::vector<std::uint32_t> unknownMaterials() const;

private:
    EnvelopeList m_envelopes;
};

} // namespace Model::ModelExtraction
