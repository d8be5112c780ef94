#pragma once

#include "Core/Operations/Operation.h"
#include "Core/Operations/ProcessSequence.h"

#include <boost/shared_ptr.hpp>

#include <cstdint>

namespace Core::Operations {

/// Etches a film of a cell volume along z. Needs the volume, the material and the depth, in any
/// order; the directions start as from the top.
class SimpleReactiveIonEtchingOperation final : public Operation
{
public:
    static constexpr std::uint32_t Id = 30;

    /// The workspace is not owned.
    explicit SimpleReactiveIonEtchingOperation(Workspace *workspace);

    void setObserver(boost::shared_ptr<Util::IObserver> observer);

    /// Cells; the fraction is cut off, and what is beyond 32 bits. What is negative or not a number
    /// etches nothing.
    void setDepth(double depth);
    void setMaterial(std::uint32_t material);
    /// Each of the two adds its direction, or takes both away. So an etching from below alone, as
    /// the dialog sets it, etches nothing; that is known and stays.
    void setEtchFromBelow(bool etch);
    void setEtchFromTop(bool etch);

    void next() override;
    void cancel() override;
    /// Etches, if volume and values are there; cancels otherwise.
    void end() override;

private:
    ProcessSequence m_sequence;
    boost::shared_ptr<Util::IObserver> m_observer;
    std::uint32_t m_material = 0;
    double m_depth = 0.0;
    /// From the top.
    std::uint8_t m_etchDirections = 1;
    bool m_materialSet = false;
    bool m_depthSet = false;
};

} // namespace Core::Operations
