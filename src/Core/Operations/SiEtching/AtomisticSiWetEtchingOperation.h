#pragma once

#include "Core/Operations/SiEtching/SiWetEtchOperation.h"

namespace Core::Operations {

/// Etches the silicon of a cell volume atom by atom, by the counts of their bonds.
class AtomisticSiWetEtchingOperation final : public SiWetEtchOperation
{
public:
    static constexpr std::uint32_t Id = 28;

    /// The workspace is not owned.
    explicit AtomisticSiWetEtchingOperation(Workspace *workspace);

    /// The one observer of the class, told when the volume is there.
    static void setObserver(boost::shared_ptr<Util::IObserver> observer);

private:
    void etch(Model::Automaton::TotalVolume *volume, double depth) const override;
    boost::shared_ptr<Util::IObserver> observer() const override { return s_observer; }

    static boost::shared_ptr<Util::IObserver> s_observer;
};

} // namespace Core::Operations
