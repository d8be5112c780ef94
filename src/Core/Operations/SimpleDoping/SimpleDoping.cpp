#include "Core/Operations/SimpleDoping/SimpleDoping.h"

#include "Core/Operations/CellularProcess/DistanceFrontSteps.h"

#include <QString>

#include <boost/bind/bind.hpp>

namespace Core::Operations {

using Model::Automaton::Voxel;

namespace {

/// Void is the source, on all sides of the structure; what can be doped lets the front through, all
/// else blocks it.
struct DopingRules
{
    static constexpr Neighborhood neighborhood = Neighborhood::Moore;

    std::uint32_t material;
    float depth;
    const CompatibleMaterials &compatibleSet;

    float far() const { return depth; }
    CellStart start(std::uint32_t present) const
    {
        if (present == 0)
            return CellStart::Source;
        return compatibleSet.contains(present) ? CellStart::Open : CellStart::Blocked;
    }
    bool startsFront(std::uint32_t present) const { return present == 0; }
    bool takesPart(const Voxel &cell) const { return compatibleSet.contains(cell.material()); }
    float limit(const Voxel & /*cell*/) const { return depth * depth; }
    void accept(const Voxel & /*cell*/, Voxel &next) const { next.setMaterial(material); }
    bool passes(std::uint32_t present) const { return compatibleSet.contains(present); }
};

} // namespace

SimpleDoping::SimpleDoping(Model::Automaton::TotalVolume *volume, std::uint32_t material,
                           float depth)
    : m_material(material),
      m_depth(depth),
      m_compatibleSet(QStringLiteral("Simple Doping")),
      m_front(volume)
{}

void SimpleDoping::runDoping()
{
    using namespace boost::placeholders;
    const TakenVoxels voxels = m_front.takeVoxels();
    const std::uint64_t stepCount = m_front.stepCount(m_depth);
    m_front.strips().runPhase(
        boost::bind(&SimpleDoping::runPartialInitialization, this, _1, _2, _3));
    for (std::uint64_t step = 0; step < stepCount; ++step)
        m_front.strips().runPhase(
            boost::bind(&SimpleDoping::runPartialDopingStep, this, _1, _2, _3));
}

void SimpleDoping::runPartialInitialization(std::int32_t start, std::int32_t end,
                                            std::uint32_t strip)
{
    m_front.initializeStrip(DopingRules{m_material, m_depth, m_compatibleSet}, start, end, strip);
}

void SimpleDoping::runPartialDopingStep(std::int32_t start, std::int32_t end, std::uint32_t strip)
{
    m_front.stepStrip(DopingRules{m_material, m_depth, m_compatibleSet}, start, end, strip);
}

} // namespace Core::Operations
