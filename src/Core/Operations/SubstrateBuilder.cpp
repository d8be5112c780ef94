#include "Core/Operations/SubstrateBuilder.h"

#include "Model/Automaton/TotalVolume.h"

#include <boost/make_shared.hpp>

namespace Core::Operations {

using Model::Automaton::TotalVolume;

SubstrateBuilder::SubstrateBuilder(std::uint32_t material, std::uint32_t totalX,
                                   std::uint32_t totalY, std::uint32_t totalZ,
                                   const Util::Vector3D &position, std::uint32_t displacementX,
                                   std::uint32_t displacementY, std::uint32_t displacementZ,
                                   std::uint32_t sizeX, std::uint32_t sizeY, std::uint32_t sizeZ)
    : m_material(material),
      m_totalX(totalX),
      m_totalY(totalY),
      m_totalZ(totalZ),
      m_sizeX(sizeX),
      m_sizeY(sizeY),
      m_sizeZ(sizeZ),
      m_displacementX(displacementX),
      m_displacementY(displacementY),
      m_displacementZ(displacementZ),
      m_spherical(false),
      m_position(position)
{}

SubstrateBuilder::SubstrateBuilder(std::uint32_t material, std::uint32_t totalX,
                                   std::uint32_t totalY, std::uint32_t totalZ,
                                   const Util::Vector3D &position, std::uint32_t centerX,
                                   std::uint32_t centerY, std::uint32_t centerZ,
                                   std::uint32_t radius)
    : m_material(material),
      m_totalX(totalX),
      m_totalY(totalY),
      m_totalZ(totalZ),
      m_radius(radius),
      m_centerX(centerX),
      m_centerY(centerY),
      m_centerZ(centerZ),
      m_spherical(true),
      m_position(position)
{}

void SubstrateBuilder::fill()
{
    m_ids.assign(m_totalX * m_totalY * m_totalZ, 0);
    if (m_spherical)
        fillSphere();
    else
        fillBox();
}

boost::shared_ptr<TotalVolume> SubstrateBuilder::build()
{
    if (m_ids.empty())
        fill();
    return boost::make_shared<TotalVolume>(m_totalX, m_totalY, m_totalZ, m_cellSizeX, m_cellSizeY,
                                           m_cellSizeZ, m_position, m_ids);
}

void SubstrateBuilder::fillBox()
{
    const std::uint32_t endX = m_displacementX + m_sizeX;
    const std::uint32_t endY = m_displacementY + m_sizeY;
    const std::uint32_t endZ = m_displacementZ + m_sizeZ;
    for (std::uint32_t x = m_displacementX; x < m_totalX && x < endX; ++x)
        for (std::uint32_t y = m_displacementY; y < m_totalY && y < endY; ++y)
            for (std::uint32_t z = m_displacementZ; z < m_totalZ && z < endZ; ++z)
                m_ids[(m_totalY * x + y) * m_totalZ + z] = m_material;
}

void SubstrateBuilder::fillSphere()
{
    // The square wraps in 32 bits and is signed before it becomes a float: a huge radius may come
    // out negative and fill nothing.
    const float reach = static_cast<float>(static_cast<std::int32_t>(m_radius * m_radius)) *
                        m_cellSizeZ * m_cellSizeZ;
    const auto offset = [](std::uint32_t cell, std::uint32_t center, float cellSize) {
        return static_cast<float>(static_cast<std::int32_t>(cell - center)) * cellSize;
    };
    for (std::uint32_t x = 0; x < m_totalX; ++x) {
        const float dx = offset(x, m_centerX, m_cellSizeX);
        for (std::uint32_t y = 0; y < m_totalY; ++y) {
            const float dy = offset(y, m_centerY, m_cellSizeY);
            for (std::uint32_t z = 0; z < m_totalZ; ++z) {
                const float dz = offset(z, m_centerZ, m_cellSizeZ);
                if (reach >= dx * dx + dy * dy + dz * dz)
                    m_ids[(m_totalY * x + y) * m_totalZ + z] = m_material;
            }
        }
    }
}

} // namespace Core::Operations
