#include "Core/Operations/Planarization/Planarization.h"

#include "Core/Operations/CellularProcess/CellStreams.h"
#include "Core/Operations/CellularProcess/StripRun.h"
#include "Core/Operations/CellularProcess/TakenVoxels.h"
#include "Model/Automaton/TotalVolume.h"
#include "Util/FutureGroup.h"

#include <QDebug>
#include <QElapsedTimer>
#include <QThreadPool>
#include <QtConcurrentRun>

#include <algorithm>
#include <cstddef>

namespace Core::Operations {

using Model::Automaton::Voxel;

namespace {

/// Below that many columns of x a thread, one thread does it alone.
constexpr std::uint32_t NarrowestStrip = 3;

/// Empties the cells [first, end) of a column in both arrays, whatever they hold: threads overlap
/// here, and none may read what another one writes.
void clear(Voxel *cells, Voxel *nextCells, std::size_t first, std::size_t end)
{
    for (std::size_t z = first; z < end; ++z) {
        cells[z].setMaterial(0);
        nextCells[z].setMaterial(0);
    }
}

} // namespace

Planarization::Planarization(Model::Automaton::TotalVolume *volume, std::uint32_t maximumHeight,
                             std::uint32_t minimumHeight)
    : m_volume(volume),
      m_maximumHeight(std::min(maximumHeight, volume->sizeZ())),
      m_minimumHeight(minimumHeight),
      m_sizeX(StripRun::layersOf(*volume)),
      m_sizeY(volume->sizeY()),
      m_sizeZ(volume->sizeZ()),
      m_threads(std::max(1, QThreadPool::globalInstance()->maxThreadCount()))
{}

void Planarization::runPlanarization()
{
    const TakenVoxels voxels(*m_volume, m_voxels, m_nextVoxels);
    const auto threads = static_cast<std::uint32_t>(m_threads);
    const std::uint32_t width = m_sizeX / threads;
    qDebug().nospace() << "Threads " << m_threads;
    qDebug().nospace() << "Cells per thread " << m_sizeZ * m_sizeY * width;
    QElapsedTimer timer;
    timer.start();
    if (width < NarrowestStrip) {
        runThread(0);
    } else {
        Util::FutureGroup runs;
        for (std::uint32_t thread = 0; thread < threads; ++thread)
            runs.add(QtConcurrent::run(this, &Planarization::runThread, thread));
        runs.wait();
    }
    qDebug().nospace() << "Elapsed time " << timer.elapsed();
}

void Planarization::runThread(std::uint32_t thread)
{
    const std::uint32_t width = m_sizeX / static_cast<std::uint32_t>(m_threads);
    std::uint32_t start = 0;
    std::uint32_t end = m_sizeX;
    if (width >= NarrowestStrip) {
        start = width * thread;
        // From the second on, strips go on to the end of the volume and overlap. All write the same
        // zero, so that costs some work and no more.
        if (thread == 0)
            end = width;
    }
    const std::size_t sizeZ = m_sizeZ;
    const std::size_t minimum = std::min(m_minimumHeight, m_sizeZ);
    const std::size_t maximum = m_maximumHeight;
    const std::size_t lastColumn = std::size_t{end} * m_sizeY;
    for (std::size_t column = std::size_t{start} * m_sizeY; column < lastColumn; ++column) {
        Voxel *cells = m_voxels + column * sizeZ;
        Voxel *nextCells = m_nextVoxels + column * sizeZ;
        clear(cells, nextCells, 0, minimum);
        passOver(cells, nextCells, minimum, maximum);
        clear(cells, nextCells, maximum, sizeZ);
    }
}

} // namespace Core::Operations
