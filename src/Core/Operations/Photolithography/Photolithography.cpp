#include "Core/Operations/Photolithography/Photolithography.h"

#include "Model/Automaton/TotalVolume.h"

#include <boost/bind/bind.hpp>

#include <cstddef>

namespace Core::Operations {

using Model::Automaton::TotalVolume;

namespace {

/// A bit a column of the volume, true where no light gets through.
std::vector<bool> blockedColumns(const TotalVolume &volume, bool negative,
                                 const std::vector<bool> &mask, std::uint32_t width,
                                 std::uint32_t height)
{
    const std::uint32_t sizeX = StripRun::layersOf(volume);
    const std::uint32_t sizeY = volume.sizeY();
    std::vector<bool> blocked(std::size_t{sizeX} * sizeY, false);
    if (mask.size() != std::uint64_t{width} * height)
        return blocked;
    for (std::uint32_t x = 0; x < sizeX; ++x)
        for (std::uint32_t y = 0; y < sizeY; ++y) {
            const bool inside = x < width && y < height;
            const bool opaque = inside && mask[std::size_t{x} * height + y];
            blocked[std::size_t{x} * sizeY + y] = opaque != negative;
        }
    return blocked;
}

} // namespace

Photolithography::Photolithography(TotalVolume *volume, std::uint32_t material,
                                   const std::vector<bool> &bottomMask, std::uint32_t bottomWidth,
                                   std::uint32_t bottomHeight, const std::vector<bool> &topMask,
                                   std::uint32_t topWidth, std::uint32_t topHeight)
    : m_steps(StripRun::layersOf(*volume) == 0 ? 0 : volume->sizeZ()),
      m_bottomBlocked(blockedColumns(*volume, material == NegativeResist, bottomMask, bottomWidth,
                                     bottomHeight)),
      m_topBlocked(
          blockedColumns(*volume, material == NegativeResist, topMask, topWidth, topHeight)),
      m_strips(StripRun::layersOf(*volume)),
      m_front(volume, material, m_strips.threads())
{}

void Photolithography::runDevelopment()
{
    using namespace boost::placeholders;
    const TakenVoxels voxels = m_front.takeVoxels();
    m_strips.runPhase(boost::bind(&Photolithography::runPartialInitialization, this, _1, _2, _3));
    // As many as the highest column has cells.
    for (std::uint32_t step = 0; step < m_steps; ++step)
        m_strips.runPhase(boost::bind(&Photolithography::runPartialDevelopmentStep, this, _3));
}

void Photolithography::runPartialInitialization(std::int32_t start, std::int32_t end,
                                                std::uint32_t strip)
{
    m_front.initializeStrip(
        static_cast<std::uint32_t>(start), static_cast<std::uint32_t>(end), strip,
        [this](std::size_t column) { return !m_topBlocked[column]; },
        [this](std::size_t column) { return !m_bottomBlocked[column]; });
}

// Each mask governs its own direction alone: a front that came from above is not stopped by the
// bottom mask on its way down.
void Photolithography::runPartialDevelopmentStep(std::uint32_t strip)
{
    m_front.stepStrip(
        strip, [this](std::size_t column) { return !m_bottomBlocked[column]; },
        [this](std::size_t column) { return !m_topBlocked[column]; });
}

} // namespace Core::Operations
