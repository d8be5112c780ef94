#include "Model/Materials/Material.h"

#include <cmath>
#include <cstddef>

namespace Model::Materials {

namespace {

// One step of an eight-bit channel gets lost when a colour goes through a file.
constexpr double channelTolerance = 1.0 / 256.0;

} // namespace

Material::Material(std::uint32_t id, const QString &name, float density, float youngModulus,
                   float poissonRatio, const float *color)
    : m_id(id),
      m_name(name),
      m_density(density),
      m_youngModulus(youngModulus),
      m_poissonRatio(poissonRatio)
{
    setColor(color);
}

void Material::setColor(const float *color)
{
    if (color == nullptr) {
        m_color = s_defaultColor;
        return;
    }
    for (std::size_t channel = 0; channel < m_color.size(); ++channel) {
        m_color[channel] = color[channel];
    }
}

bool Material::operator==(const Material &other) const
{
    if (m_id != other.m_id || m_name != other.m_name) {
        return false;
    }
    for (std::size_t channel = 0; channel < m_color.size(); ++channel) {
        const double difference = double(m_color[channel]) - double(other.m_color[channel]);
        if (!(std::abs(difference) <= channelTolerance)) {
            return false;
        }
    }
    return true;
}

} // namespace Model::Materials
