#include "Core/Operations/Electrodeposition/Electrodeposition.h"

#include "Core/Operations/CellularProcess/DistanceFrontSteps.h"
#include "Model/Automaton/TotalVolume.h"

#include <boost/bind/bind.hpp>

#include <cmath>

namespace Core::Operations {

using Model::Automaton::TotalVolume;
using Model::Automaton::Voxel;

namespace {

/// The conducting material is the source; void is where the film grows; all else blocks.
struct PlatingRules
{
    static constexpr Neighborhood neighborhood = Neighborhood::Moore;

    std::uint32_t material;
    std::uint32_t conductingMaterial;
    float thickness;

    float far() const { return thickness; }
    CellStart start(std::uint32_t present) const
    {
        if (present == conductingMaterial)
            return CellStart::Source;
        return present != 0 ? CellStart::Blocked : CellStart::Open;
    }
    /// The opposite of what one would expect, on purpose: any neighbour that does not conduct, void
    /// too, brings a void cell into the first list, so that nearly all are in it.
    bool startsFront(std::uint32_t present) const { return present != conductingMaterial; }
    bool takesPart(const Voxel & /*cell*/) const { return true; }
    float limit(const Voxel & /*cell*/) const { return thickness * thickness; }
    void accept(const Voxel &cell, Voxel &next) const
    {
        if (cell.material() == 0)
            next.setMaterial(material);
    }
    bool passes(std::uint32_t present) const { return present == 0; }
};

/// All steps count up, whichever way they go: a distance is the length of the path along each axis.
DistanceFront::Metric metricOf(const TotalVolume &volume)
{
    DistanceFront::Metric metric =
        DistanceFront::metricOf(volume.cellSizeX(), volume.cellSizeY(), volume.cellSizeZ());
    for (auto &vector : metric.stepVectors)
        for (float &component : vector)
            component = std::abs(component);
    return metric;
}

} // namespace

Electrodeposition::Electrodeposition(TotalVolume *volume, std::uint32_t material,
                                     std::uint32_t conductingMaterial, float thickness)
    : m_material(material),
      m_conductingMaterial(conductingMaterial),
      m_thickness(thickness),
      m_front(volume, metricOf(*volume))
{}

void Electrodeposition::runDeposition()
{
    using namespace boost::placeholders;
    const TakenVoxels voxels = m_front.takeVoxels();
    const std::uint64_t stepCount = m_front.stepCount(m_thickness);
    m_front.strips().runPhase(
        boost::bind(&Electrodeposition::runPartialInitialization, this, _1, _2, _3));
    for (std::uint64_t step = 0; step < stepCount; ++step)
        m_front.strips().runPhase(
            boost::bind(&Electrodeposition::runPartialDepositionStep, this, _1, _2, _3));
}

void Electrodeposition::runPartialInitialization(std::int32_t start, std::int32_t end,
                                                 std::uint32_t strip)
{
    m_front.initializeStrip(PlatingRules{m_material, m_conductingMaterial, m_thickness}, start, end,
                            strip);
}

void Electrodeposition::runPartialDepositionStep(std::int32_t start, std::int32_t end,
                                                 std::uint32_t strip)
{
    m_front.stepStrip(PlatingRules{m_material, m_conductingMaterial, m_thickness}, start, end,
                      strip);
}

} // namespace Core::Operations
