#include "Core/Operations/Planarization/Planarization.h"

#include "Core/Operations/CellularProcess/StripRun.h"
#include "Model/Automaton/TotalVolume.h"

#include <QDebug>
#include <QElapsedTimer>
#include <QFuture>
#include <QThreadPool>
#include <QtConcurrentRun>

#include <algorithm>
#include <cstddef>
#include <vector>

namespace Core::Operations {

using Model::Automaton::Voxel;

namespace {

/// Below that many columns of x a thread, one thread does it alone.
constexpr std::uint32_t NarrowestStrip = 3;

void clear(Voxel *first, const Voxel *end)
{
    for (Voxel *cell = first; cell < end; ++cell)
        cell->setMaterial(0);
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
    m_voxels = m_volume->voxels();
    m_nextVoxels = m_volume->nextVoxels();
    const auto threads = static_cast<std::uint32_t>(m_threads);
    const std::uint32_t width = m_sizeX / threads;
    qDebug() << "Threads " << m_threads;
    qDebug() << "Cells per thread " << m_sizeZ * m_sizeY * width;
    QElapsedTimer timer;
    timer.start();
    if (width < NarrowestStrip) {
        runThread(0);
    } else {
        std::vector<QFuture<void>> futures;
        for (std::uint32_t thread = 0; thread < threads; ++thread)
            futures.push_back(QtConcurrent::run(this, &Planarization::runThread, thread));
        for (QFuture<void> &future : futures)
            future.waitForFinished();
    }
    qDebug() << "Elapsed time " << timer.elapsed();
    m_volume->releaseVoxels();
    m_volume->releaseNextVoxels();
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
    const std::uint32_t minimum = std::min(m_minimumHeight, m_sizeZ);
    for (std::uint32_t x = start; x < end; ++x)
        for (std::uint32_t y = 0; y < m_sizeY; ++y) {
            const std::size_t column = (std::size_t{x} * m_sizeY + y) * m_sizeZ;
            for (Voxel *cells : {m_voxels + column, m_nextVoxels + column}) {
                clear(cells, cells + minimum);
                clear(cells + m_maximumHeight, cells + m_sizeZ);
            }
        }
}

} // namespace Core::Operations
