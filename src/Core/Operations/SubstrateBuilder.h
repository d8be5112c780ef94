#pragma once

#include "Util/Vector3D.h"

#include <boost/shared_ptr.hpp>

#include <cstdint>
#include <vector>

namespace Model::Automaton {
class TotalVolume;
}

namespace Core::Operations {

/// Builds a cell volume whose cells are void but for one body of one material: a box or a sphere.
/// Sizes and places in cells, `position` in the world. Cells are 1.0 x 1.0 x 1.0 drawing units.
class SubstrateBuilder final
{
public:
    /// A box. What reaches beyond the volume is clipped.
    SubstrateBuilder(std::uint32_t material, std::uint32_t totalX, std::uint32_t totalY,
                     std::uint32_t totalZ, const Util::Vector3D &position,
                     std::uint32_t displacementX, std::uint32_t displacementY,
                     std::uint32_t displacementZ, std::uint32_t sizeX, std::uint32_t sizeY,
                     std::uint32_t sizeZ);
    /// A sphere: the cells whose index lies at most `radius` cells from the centre cell's. It
    /// reaches exactly `radius` cells along each axis.
    SubstrateBuilder(std::uint32_t material, std::uint32_t totalX, std::uint32_t totalY,
                     std::uint32_t totalZ, const Util::Vector3D &position, std::uint32_t centerX,
                     std::uint32_t centerY, std::uint32_t centerZ, std::uint32_t radius);

    /// Fills the cells, on any thread. build() does it where this was not called.
    void fill();
    /// The new volume, with no surface built.
    boost::shared_ptr<Model::Automaton::TotalVolume> build();

private:
    void fillBox();
    void fillSphere();

    std::uint32_t m_material = 0;
    std::uint32_t m_totalX = 0;
    std::uint32_t m_totalY = 0;
    std::uint32_t m_totalZ = 0;
    std::uint32_t m_sizeX = 0;
    std::uint32_t m_sizeY = 0;
    std::uint32_t m_sizeZ = 0;
    std::uint32_t m_displacementX = 0;
    std::uint32_t m_displacementY = 0;
    std::uint32_t m_displacementZ = 0;
    std::uint32_t m_radius = 0;
    std::uint32_t m_centerX = 0;
    std::uint32_t m_centerY = 0;
    std::uint32_t m_centerZ = 0;
    bool m_spherical;
    float m_cellSizeX = 1.0f;
    float m_cellSizeY = 1.0f;
    float m_cellSizeZ = 1.0f;
    Util::Vector3D m_position;
    std::vector<std::uint32_t> m_ids;
};

} // namespace Core::Operations
