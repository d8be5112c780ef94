#pragma once

#include "Core/Operations/Operation.h"
#include "Core/Operations/ProcessSequence.h"

#include <boost/shared_ptr.hpp>

#include <cstdint>

namespace Core::Operations {

/// Implants a doped layer into a cell volume. Needs the volume and all three values, in any order.
class IonImplantationOperation final : public Operation
{
public:
    static constexpr std::uint32_t Id = 3;

    /// The workspace is not owned.
    explicit IonImplantationOperation(Workspace *workspace);

    /// The one observer of the class, told when the volume is there.
    static void setObserver(boost::shared_ptr<Util::IObserver> observer);

    /// Drawing units, both.
    void setAnnealingDistance(float distance);
    void setImplantationDepth(float depth);
    /// What the cells become.
    void setMaterial(std::uint32_t material);

    void next() override;
    void cancel() override;
    /// Runs the simulation, if volume and values are there; cancels otherwise.
    void end() override;

private:
    static boost::shared_ptr<Util::IObserver> s_observer;

    ProcessSequence m_sequence;
    std::uint32_t m_material = 0;
    float m_implantationDepth = 0.0f;
    float m_annealingDistance = 0.0f;
    bool m_depthSet = false;
    bool m_annealingDistanceSet = false;
    bool m_materialSet = false;
};

} // namespace Core::Operations
