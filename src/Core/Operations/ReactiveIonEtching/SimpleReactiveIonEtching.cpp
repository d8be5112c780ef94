#include "Core/Operations/ReactiveIonEtching/SimpleReactiveIonEtching.h"

#include "Util/FutureGroup.h"

#include <QDebug>
#include <QThreadPool>
#include <QtConcurrentRun>

#include <algorithm>
#include <cstddef>

namespace Core::Operations {

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
    : m_steps(steps),
      m_etchDirections(etchDirections),
      m_threads(threadsFor(StripRun::layersOf(*volume))),
      m_front(volume, material, m_threads)
{}

void SimpleReactiveIonEtching::runEtching()
{
    const TakenVoxels voxels = m_front.takeVoxels();
    runPhase(&SimpleReactiveIonEtching::runPartialInitialization);
    for (std::uint32_t step = 0; step < m_steps; ++step)
        runPhase(&SimpleReactiveIonEtching::runPartialEtchingStep);
}

// On the pool also for a single strip.
void SimpleReactiveIonEtching::runPhase(void (SimpleReactiveIonEtching::*function)(std::uint32_t))
{
    Util::FutureGroup runs;
    for (std::uint32_t strip = 0; strip < m_threads; ++strip)
        runs.add(QtConcurrent::run(this, function, strip));
    runs.wait();
}

void SimpleReactiveIonEtching::runPartialInitialization(std::uint32_t strip)
{
    const bool fromTop = (m_etchDirections & FromTop) != 0;
    const bool fromBelow = (m_etchDirections & FromBelow) != 0;
    m_front.initializeStrip(
        start(strip), end(strip), strip, [=](std::size_t /*column*/) { return fromTop; },
        [=](std::size_t /*column*/) { return fromBelow; });
}

void SimpleReactiveIonEtching::runPartialEtchingStep(std::uint32_t strip)
{
    const bool fromTop = (m_etchDirections & FromTop) != 0;
    const bool fromBelow = (m_etchDirections & FromBelow) != 0;
    m_front.stepStrip(
        strip, [=](std::size_t /*column*/) { return fromBelow; },
        [=](std::size_t /*column*/) { return fromTop; });
    qDebug().nospace() << "Surface list size for thread " << strip << ": "
                       << m_front.listSize(strip);
}

std::uint32_t SimpleReactiveIonEtching::start(std::uint32_t strip) const
{
    return m_front.sizeX() / m_threads * strip;
}

std::uint32_t SimpleReactiveIonEtching::end(std::uint32_t strip) const
{
    return strip + 1 == m_threads ? m_front.sizeX() : start(strip) + m_front.sizeX() / m_threads;
}

} // namespace Core::Operations
