#include "Model/ModelExtraction/RectangularCuboidEnvelope.h"

namespace Model::ModelExtraction {

RectangularCuboidEnvelope::RectangularCuboidEnvelope(std::int32_t x, std::int32_t y, std::int32_t z,
                                                     std::int32_t width, std::int32_t depth,
                                                     std::int32_t height, std::int32_t material)
    : m_x(x),
      m_y(y),
      m_z(z),
      m_width(width),
      m_depth(depth),
      m_height(height),
      m_material(material)
{}

void RectangularCuboidEnvelope::setNeighbour(unsigned face, RectangularCuboidEnvelope *envelope)
{
    RectangularCuboidEnvelope *&entry = m_neighbours[face];
    if (!entry && envelope)
        ++m_neighbourCount;
    else if (entry && !envelope)
        --m_neighbourCount;
    entry = envelope;
}

} // namespace Model::ModelExtraction
