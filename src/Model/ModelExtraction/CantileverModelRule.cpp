#include "Model/ModelExtraction/CantileverModelRule.h"

#include "Model/Automaton/Voxel.h"
#include "Model/ModelExtraction/CantileverStructure.h"
#include "Model/ModelExtraction/ExtractedModel.h"

#include <boost/make_shared.hpp>

#include <algorithm>
#include <array>
#include <cstdint>

namespace Model::ModelExtraction {

namespace {

constexpr auto Anchor = static_cast<std::int32_t>(Automaton::Voxel::Silicon);
constexpr unsigned Below = 4;
constexpr unsigned Above = 5;

bool isTip(const RectangularCuboidEnvelope &envelope)
{
    return envelope.material() != Anchor && envelope.neighbourCount() == 1 &&
           !envelope.neighbour(Below) && !envelope.neighbour(Above);
}

unsigned directionOf(const RectangularCuboidEnvelope &tip)
{
    for (unsigned face = 0; face < 3; ++face)
        if (tip.neighbour(face))
            return face;
    return 3;
}

std::array<std::int32_t, 3> cornerOf(const RectangularCuboidEnvelope &envelope)
{
    return {envelope.x(), envelope.y(), envelope.z()};
}

/// In 32 bits, around the end where it does not fit.
std::int32_t grownBy(std::int32_t extent, std::int32_t first, std::int32_t second)
{
    const auto [lower, upper] = std::minmax({first, second});
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(extent) +
                                     static_cast<std::uint32_t>(upper) -
                                     static_cast<std::uint32_t>(lower));
}

boost::shared_ptr<RectangularCuboidEnvelope> beamFrom(const RectangularCuboidEnvelope &tip)
{
    const unsigned direction = directionOf(tip);
    std::array<std::int32_t, 3> corner = cornerOf(tip);
    std::array<std::int32_t, 3> extents = {tip.width(), tip.depth(), tip.height()};
    const RectangularCuboidEnvelope *piece = tip.neighbour(direction);
    while (piece && piece->material() == tip.material() && piece->neighbourCount() == 2 &&
           piece->neighbour(direction)) {
        const std::array<std::int32_t, 3> other = cornerOf(*piece);
        for (unsigned axis = 0; axis < 3; ++axis) {
            extents[axis] = grownBy(extents[axis], other[axis], corner[axis]);
            corner[axis] = std::min(corner[axis], other[axis]);
        }
        piece = piece->neighbour(direction);
    }
    return boost::make_shared<RectangularCuboidEnvelope>(
        corner[0], corner[1], corner[2], extents[0], extents[1], extents[2], tip.material());
}

} // namespace

boost::shared_ptr<IStructure> CantileverModelRule::extract(const ExtractedModel &model)
{
    m_anchors.clear();
    m_beams.clear();
    for (const auto &envelope : model.envelopes()) {
        if (envelope->material() == Anchor)
            m_anchors.push_back(envelope);
        else if (isTip(*envelope))
            m_beams.push_back(beamFrom(*envelope));
    }
    if (m_beams.empty())
        return {};
    return boost::make_shared<CantileverStructure>(m_beams);
}

} // namespace Model::ModelExtraction
