#include "Core/Operations/IsotropicFilmEtching/IsotropicFilmEtching.h"

#include "Core/Operations/CellularProcess/DistanceFrontSteps.h"

#include "Model/Automaton/TotalVolume.h"

#include <boost/bind/bind.hpp>

namespace Core::Operations {

using Model::Automaton::Voxel;

namespace {

/// Every void cell is a source; filled cells of any material enter the lists, and those of other
/// materials drop out of them again untested.
struct EtchingRules
{
    static constexpr Neighborhood neighborhood = Neighborhood::Moore;

    std::uint32_t material;
    float thickness;

    float far() const { return thickness; }
    CellStart start(std::uint32_t present) const
    {
        return present == 0 ? CellStart::Source : CellStart::Open;
    }
    bool startsFront(std::uint32_t present) const { return present == 0; }
    /// A cell that is etched already still takes part.
    bool takesPart(const Voxel &cell) const
    {
        return cell.material() == material || cell.material() == 0;
    }
    float limit(const Voxel & /*cell*/) const { return thickness * thickness; }
    void accept(const Voxel &cell, Voxel &next) const
    {
        if (cell.material() == material)
            next.setMaterial(0);
    }
    bool passes(std::uint32_t present) const { return present != 0; }
};

} // namespace

IsotropicFilmEtching::IsotropicFilmEtching(Model::Automaton::TotalVolume *volume,
                                           std::uint32_t material, float thickness)
    : m_volume(volume),
      m_material(material),
      m_thickness(thickness),
      m_front(volume)
{}

void IsotropicFilmEtching::runEtching()
{
    using namespace boost::placeholders;
    const TakenVoxels voxels = m_front.takeVoxels();
    const std::uint64_t stepCount = m_front.stepCount(m_thickness);
    m_front.strips().runPhase(
        boost::bind(&IsotropicFilmEtching::runPartialInitialization, this, _1, _2, _3));
    for (std::uint64_t step = 0; step < stepCount; ++step) {
        m_front.strips().runPhase(
            boost::bind(&IsotropicFilmEtching::runPartialEtchingStep, this, _1, _2, _3));
        // On a single strip the arrays change names after each step, while the front keeps its
        // pointers. Both agree in material by then, so nothing shows it.
        if (m_front.strips().isSingle())
            m_volume->swapVoxels();
    }
}

void IsotropicFilmEtching::runPartialInitialization(std::int32_t start, std::int32_t end,
                                                    std::uint32_t strip)
{
    m_front.initializeStrip(EtchingRules{m_material, m_thickness}, start, end, strip);
}

void IsotropicFilmEtching::runPartialEtchingStep(std::int32_t start, std::int32_t end,
                                                 std::uint32_t strip)
{
    m_front.stepStrip(EtchingRules{m_material, m_thickness}, start, end, strip);
}

} // namespace Core::Operations
