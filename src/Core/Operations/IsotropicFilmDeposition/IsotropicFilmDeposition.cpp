#include "Core/Operations/IsotropicFilmDeposition/IsotropicFilmDeposition.h"

#include "Core/Operations/CellularProcess/DistanceFrontSteps.h"

#include <boost/bind/bind.hpp>

namespace Core::Operations {

using Model::Automaton::Voxel;

namespace {

/// Every filled cell is a source, whatever its material and however deep it lies; void is where the
/// film grows.
struct DepositionRules
{
    static constexpr Neighborhood neighborhood = Neighborhood::Moore;

    std::uint32_t material;
    float thickness;

    float far() const { return thickness; }
    CellStart start(std::uint32_t present) const
    {
        return present != 0 ? CellStart::Source : CellStart::Open;
    }
    bool startsFront(std::uint32_t present) const { return present != 0; }
    bool takesPart(const Voxel & /*cell*/) const { return true; }
    float limit(const Voxel & /*cell*/) const { return thickness * thickness; }
    void accept(const Voxel &cell, Voxel &next) const
    {
        if (cell.material() == 0)
            next.setMaterial(material);
    }
    bool passes(std::uint32_t present) const { return present == 0; }
};

} // namespace

IsotropicFilmDeposition::IsotropicFilmDeposition(Model::Automaton::TotalVolume *volume,
                                                 std::uint32_t material, float thickness)
    : m_material(material),
      m_thickness(thickness),
      m_front(volume)
{}

void IsotropicFilmDeposition::runDeposition()
{
    using namespace boost::placeholders;
    const TakenVoxels voxels = m_front.takeVoxels();
    const std::uint64_t stepCount = m_front.stepCount(m_thickness);
    m_front.strips().runPhase(
        boost::bind(&IsotropicFilmDeposition::runPartialInitialization, this, _1, _2, _3));
    for (std::uint64_t step = 0; step < stepCount; ++step)
        m_front.strips().runPhase(
            boost::bind(&IsotropicFilmDeposition::runPartialDepositionStep, this, _1, _2, _3));
}

void IsotropicFilmDeposition::runPartialInitialization(std::int32_t start, std::int32_t end,
                                                       std::uint32_t strip)
{
    m_front.initializeStrip(DepositionRules{m_material, m_thickness}, start, end, strip);
}

void IsotropicFilmDeposition::runPartialDepositionStep(std::int32_t start, std::int32_t end,
                                                       std::uint32_t strip)
{
    m_front.stepStrip(DepositionRules{m_material, m_thickness}, start, end, strip);
}

} // namespace Core::Operations
