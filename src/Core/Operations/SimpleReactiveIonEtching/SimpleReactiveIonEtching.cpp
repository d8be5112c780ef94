#include "Core/Operations/SimpleReactiveIonEtching/SimpleReactiveIonEtching.h"

#include "Core/Operations/CellularProcess/StripRun.h"
#include "Model/Automaton/TotalVolume.h"

#include <QDebug>
#include <QFuture>
#include <QThreadPool>
#include <QtConcurrentRun>

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <utility>

namespace Core::Operations {

using Model::Automaton::Voxel;

namespace {

std::uint32_t threadsFor(std::uint32_t sizeX)
{
    const auto most =
        static_cast<std::uint32_t>(std::max(1, QThreadPool::globalInstance()->maxThreadCount()));
    return sizeX / most == 0 ? 1 : most;
}

} // namespace

SimpleReactiveIonEtching::SimpleReactiveIonEtching(Model::Automaton::TotalVolume *volume,
                                                   std::uint32_t material, std::uint32_t steps,
                                                   std::uint8_t etchDirections)
    : m_volume(volume),
      m_material(material),
      m_steps(steps),
      m_etchDirections(etchDirections),
      m_sizeX(StripRun::layersOf(*volume)),
      m_sizeY(volume->sizeY()),
      m_sizeZ(volume->sizeZ()),
      m_threads(threadsFor(m_sizeX)),
      m_surfaceCells(m_threads)
{}

void SimpleReactiveIonEtching::runEtching()
{
    m_voxels = m_volume->voxels();
    m_nextVoxels = m_volume->nextVoxels();
    runPhase(&SimpleReactiveIonEtching::runPartialInitialization);
    for (std::uint32_t step = 0; step < m_steps; ++step)
        runPhase(&SimpleReactiveIonEtching::runPartialEtchingStep);
    m_volume->releaseVoxels();
    m_volume->releaseNextVoxels();
}

// On the pool also for a single strip. A front never leaves its column, so strips exchange nothing
// and need no locks.
void SimpleReactiveIonEtching::runPhase(void (SimpleReactiveIonEtching::*function)(std::uint32_t))
{
    std::vector<QFuture<void>> futures;
    for (std::uint32_t strip = 0; strip < m_threads; ++strip)
        futures.push_back(QtConcurrent::run(this, function, strip));
    for (QFuture<void> &future : futures)
        future.waitForFinished();
}

void SimpleReactiveIonEtching::runPartialInitialization(std::uint32_t strip)
{
    CellList &cells = m_surfaceCells[strip];
    cells.clear();
    const bool fromTop = (m_etchDirections & FromTop) != 0;
    const bool fromBelow = (m_etchDirections & FromBelow) != 0;
    for (std::uint32_t x = start(strip); x < end(strip); ++x)
        for (std::uint32_t y = 0; y < m_sizeY; ++y) {
            const std::size_t base = (std::size_t{x} * m_sizeY + y) * m_sizeZ;
            const Voxel *column = m_voxels + base;
            for (std::uint32_t z = 0; z < m_sizeZ; ++z) {
                if (column[z].material() != m_material)
                    continue;
                if ((fromTop && z + 1 < m_sizeZ && column[z + 1].material() == 0) ||
                    (fromBelow && z > 0 && column[z - 1].material() == 0))
                    cells.push_back(static_cast<std::int32_t>(base + z));
            }
        }
}

void SimpleReactiveIonEtching::runPartialEtchingStep(std::uint32_t strip)
{
    CellList &cells = m_surfaceCells[strip];
    // Both ascend as the list does.
    CellList above;
    CellList below;
    for (const std::int32_t c : cells) {
        if (!isFilm(c))
            continue;
        m_nextVoxels[c].setMaterial(0);
        const std::uint32_t z = static_cast<std::uint32_t>(c) % m_sizeZ;
        if (z + 1 < m_sizeZ && (m_etchDirections & FromBelow) != 0 && isFilm(c + 1))
            above.push_back(c + 1);
        if (z > 0 && (m_etchDirections & FromTop) != 0 && isFilm(c - 1))
            below.push_back(c - 1);
    }
    for (const std::int32_t c : cells)
        m_voxels[c].setMaterial(m_nextVoxels[c].material());
    cells.clear();
    std::set_union(above.begin(), above.end(), below.begin(), below.end(),
                   std::back_inserter(cells));
    qDebug() << "Surface list size for thread " << strip << ": " << cells.size();
}

std::uint32_t SimpleReactiveIonEtching::start(std::uint32_t strip) const
{
    return m_sizeX / m_threads * strip;
}

std::uint32_t SimpleReactiveIonEtching::end(std::uint32_t strip) const
{
    return strip + 1 == m_threads ? m_sizeX : start(strip) + m_sizeX / m_threads;
}

bool SimpleReactiveIonEtching::isFilm(std::int32_t cell) const
{
    return m_voxels[cell].material() == m_material;
}

} // namespace Core::Operations
