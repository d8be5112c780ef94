#include "Core/Operations/SpinCoating/SpinCoating.h"

#include "Core/Operations/CellularProcess/CellStreams.h"
#include "Core/Operations/CellularProcess/TakenVoxels.h"
#include "Model/Automaton/TotalVolume.h"

#include <algorithm>
#include <cstddef>

namespace Core::Operations {

using Model::Automaton::Voxel;

namespace {

/// Below that many layers of x a thread, the calling thread does it alone; fronts share their work
/// from 2 on.
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
    const TakenVoxels voxels(*m_volume, m_voxels, m_nextVoxels);
    m_strips.runPhase([this](std::int32_t /*start*/, std::int32_t /*end*/, std::uint32_t strip) {
        fillStrip(strip);
    });
}

void SpinCoating::fillStrip(std::uint32_t strip)
{
    fillStrip(m_strips.start(strip), m_strips.end(strip), m_depositionHeight);
}

void SpinCoating::fillStrip(std::int32_t start, std::int32_t end, std::uint32_t height)
{
    // Copies, as a write to a cell might change any member for all that the compiler knows.
    const std::uint32_t material = m_material;
    const std::size_t sizeZ = m_sizeZ;
    const std::size_t first = static_cast<std::size_t>(start) * m_sizeY;
    const std::size_t last = static_cast<std::size_t>(end) * m_sizeY;
    for (std::size_t column = first; column < last; ++column) {
        Voxel *cells = m_voxels + column * sizeZ;
        Voxel *nextCells = m_nextVoxels + column * sizeZ;
        for (std::size_t z = 0; z < height; ++z) {
            __builtin_prefetch(nextCells + z);
            if (cells[z].material() == 0) {
                cells[z].setMaterial(material);
                nextCells[z].setMaterial(material);
            }
        }
        passOver(cells, nextCells, height, sizeZ);
    }
}

} // namespace Core::Operations
