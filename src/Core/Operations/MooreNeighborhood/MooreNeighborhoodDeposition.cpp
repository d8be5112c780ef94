#include "Core/Operations/MooreNeighborhood/MooreNeighborhoodDeposition.h"

#include <QDebug>

#include <boost/bind/bind.hpp>

namespace Core::Operations {

namespace {

/// Void becomes the film, starting from where it touches anything.
LayerFront::Rules rulesFor(std::uint32_t material)
{
    return {0, material, false};
}

} // namespace

MooreNeighborhoodDeposition::MooreNeighborhoodDeposition(Model::Automaton::TotalVolume *volume,
                                                         std::uint32_t material, std::int32_t steps)
    : m_material(material),
      m_steps(steps),
      m_front(volume)
{}

void MooreNeighborhoodDeposition::runDeposition()
{
    using namespace boost::placeholders;
    const TakenVoxels voxels = m_front.takeVoxels();
    qDebug().nospace() << "Steps to run " << m_steps;
    qDebug().nospace() << "Threads " << m_front.strips().threads();
    qDebug().nospace() << "Strips per thread " << m_front.strips().stripWidth();
    qDebug().nospace() << "Deposited material id " << m_material;
    m_front.strips().runPhase(
        boost::bind(&MooreNeighborhoodDeposition::runPartialInitialization, this, _1, _2, _3));
    for (std::int32_t step = 0; step < m_steps; ++step)
        m_front.strips().runPhase(
            boost::bind(&MooreNeighborhoodDeposition::runPartialDepositionStep, this, _1, _2, _3));
}

void MooreNeighborhoodDeposition::runPartialInitialization(std::int32_t start, std::int32_t end,
                                                           std::uint32_t strip)
{
    m_front.initializeStrip(rulesFor(m_material), start, end, strip);
}

void MooreNeighborhoodDeposition::runPartialDepositionStep(std::int32_t start, std::int32_t end,
                                                           std::uint32_t strip)
{
    m_front.stepStrip(rulesFor(m_material), start, end, strip);
}

} // namespace Core::Operations
