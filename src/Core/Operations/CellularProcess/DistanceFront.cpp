#include "Core/Operations/CellularProcess/DistanceFront.h"

#include "Model/Automaton/TotalVolume.h"

#include <algorithm>
#include <cmath>

namespace Core::Operations {

DistanceFront::Metric DistanceFront::metricOf(float cellSizeX, float cellSizeY, float cellSizeZ)
{
    const std::array<float, 3> sizes = {cellSizeX, cellSizeY, cellSizeZ};
    Metric metric{{}, std::min({cellSizeX, cellSizeY, cellSizeZ})};
    for (std::size_t k = 0; k < faceNeighbors.size(); ++k) {
        const CellOffset &offset = faceNeighbors[k];
        const std::array<std::int32_t, 3> along = {offset.dx, offset.dy, offset.dz};
        // The others stay 0, also beside a size that is infinite.
        for (std::size_t axis = 0; axis < along.size(); ++axis)
            if (along[axis] != 0)
                metric.stepVectors[k][axis] = static_cast<float>(along[axis]) * sizes[axis];
    }
    return metric;
}

DistanceFront::DistanceFront(Model::Automaton::TotalVolume *volume)
    : DistanceFront(volume, metricOf(volume->cellSizeX(), volume->cellSizeY(), volume->cellSizeZ()))
{}

DistanceFront::DistanceFront(Model::Automaton::TotalVolume *volume, const Metric &metric)
    : m_volume(volume),
      m_sizeX(StripRun::layersOf(*volume)),
      m_sizeY(m_sizeX == 0 ? 0 : volume->sizeY()),
      m_sizeZ(volume->sizeZ()),
      m_metric(metric),
      m_strips(m_sizeX),
      m_front(m_strips, m_sizeX, m_sizeY, m_sizeZ),
      m_carriers(m_sizeX, m_sizeY, m_sizeZ),
      m_scratch(m_strips.threads())
{}

namespace {

std::uint64_t stepsFor(double cells)
{
    const double steps = std::trunc(cells * stepFactor);
    // Also false for what is not a number.
    if (!(steps >= 1.0))
        return 0;
    constexpr double Most = 9.0e18;
    return static_cast<std::uint64_t>(std::min(steps, Most));
}

} // namespace

std::uint64_t DistanceFront::stepCount(float distance) const
{
    return stepsFor(static_cast<double>(std::ceil(distance / m_metric.smallestStep)));
}

std::uint64_t DistanceFront::stepCount(double distance) const
{
    return stepsFor(std::ceil(distance / static_cast<double>(m_metric.smallestStep)));
}

void DistanceFront::openStrip(std::int32_t start, std::int32_t end, std::uint32_t strip)
{
    m_front.openStrip(start, end, strip);
    m_scratch[strip].taken.assign(std::size_t{m_sizeY} * m_front.wordsInColumn(), 0);
}

} // namespace Core::Operations
