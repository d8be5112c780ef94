#include "Core/Operations/SpinCoating/SpinCoating.h"

#include "Model/Automaton/TotalVolume.h"

#include <boost/bind/bind.hpp>

#include <algorithm>
#include <cstddef>

namespace Core::Operations {

namespace {

/// Below that many layers of x a thread, the calling thread does it alone; other processes share
/// their work from 2 on.
constexpr std::uint32_t NarrowestStrip = 3;

} // namespace

SpinCoating::SpinCoating(Model::Automaton::TotalVolume *volume, std::uint32_t material,
                         std::uint32_t height)
    : m_volume(volume),
      m_material(material),
      m_depositionHeight(std::min(height, volume->sizeZ())),
      m_sizeX(StripRun::layersOf(*volume)),
      m_sizeY(volume->sizeY()),
      m_sizeZ(volume->sizeZ()),
      m_strips(m_sizeX, NarrowestStrip)
{}

void SpinCoating::runDeposition()
{
    using namespace boost::placeholders;
    m_voxels = m_volume->voxels();
    m_nextVoxels = m_volume->nextVoxels();
    m_strips.runPhase(boost::bind(&SpinCoating::fillStrip, this, _1, _2));
    m_volume->releaseVoxels();
    m_volume->releaseNextVoxels();
}

void SpinCoating::fillStrip(std::int32_t start, std::int32_t end)
{
    for (auto x = static_cast<std::uint32_t>(start); x < static_cast<std::uint32_t>(end); ++x)
        for (std::uint32_t y = 0; y < m_sizeY; ++y) {
            const std::size_t column = (std::size_t{x} * m_sizeY + y) * m_sizeZ;
            for (std::size_t c = column; c < column + m_depositionHeight; ++c)
                if (m_voxels[c].material() == 0) {
                    m_voxels[c].setMaterial(m_material);
                    m_nextVoxels[c].setMaterial(m_material);
                }
        }
}

} // namespace Core::Operations
