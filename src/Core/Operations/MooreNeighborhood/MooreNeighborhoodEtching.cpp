#include "Core/Operations/MooreNeighborhood/MooreNeighborhoodEtching.h"

#include <boost/bind/bind.hpp>

namespace Core::Operations {

namespace {

/// The film becomes void, starting from where it touches void.
LayerFront::Rules rulesFor(std::uint32_t material)
{
    return {material, 0, true};
}

} // namespace

MooreNeighborhoodEtching::MooreNeighborhoodEtching(Model::Automaton::TotalVolume *volume,
                                                   std::uint32_t material, std::int32_t steps)
    : m_material(material),
      m_steps(steps),
      m_front(volume)
{}

void MooreNeighborhoodEtching::runEtching()
{
    using namespace boost::placeholders;
    const TakenVoxels voxels = m_front.takeVoxels();
    m_front.strips().runPhase(
        boost::bind(&MooreNeighborhoodEtching::runPartialInitialization, this, _1, _2, _3));
    for (std::int32_t step = 0; step < m_steps; ++step)
        m_front.strips().runPhase(
            boost::bind(&MooreNeighborhoodEtching::runPartialEtchingStep, this, _1, _2, _3));
}

void MooreNeighborhoodEtching::runPartialInitialization(std::int32_t start, std::int32_t end,
                                                        std::uint32_t strip)
{
    m_front.initializeStrip(rulesFor(m_material), start, end, strip);
}

void MooreNeighborhoodEtching::runPartialEtchingStep(std::int32_t start, std::int32_t end,
                                                     std::uint32_t strip)
{
    m_front.stepStrip(rulesFor(m_material), start, end, strip);
}

} // namespace Core::Operations
