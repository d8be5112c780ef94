#pragma once

#include "Core/Operations/Operation.h"
#include "Core/Operations/ProcessSequence.h"

#include <boost/shared_ptr.hpp>

#include <cstdint>

namespace Core::Operations {

/// Pours a liquid material into a cell volume, up to a height. Needs the volume and both values, in
/// any order.
class SpinCoatingOperation final : public Operation
{
public:
    static constexpr std::uint32_t Id = 23;

    /// The workspace is not owned.
    explicit SpinCoatingOperation(Workspace *workspace);

    /// The one observer of the class, told when the volume is there.
    static void setObserver(boost::shared_ptr<Util::IObserver> observer);

    void setMaterial(std::uint32_t material);
    /// Layers of cells above the floor of the volume.
    void setDepositionHeight(std::uint32_t height);
    /// Layers of cells that the volume has; 0 with no volume.
    std::uint32_t heightLimit() const;

    void next() override;
    void cancel() override;
    /// Pours, if volume and values are there; cancels otherwise.
    void end() override;

private:
    static boost::shared_ptr<Util::IObserver> s_observer;

    ProcessSequence m_sequence;
    std::uint32_t m_material = 0;
    std::uint32_t m_depositionHeight = 0;
    bool m_heightSet = false;
    bool m_materialSet = false;
};

} // namespace Core::Operations
