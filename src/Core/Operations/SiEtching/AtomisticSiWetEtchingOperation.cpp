#include "Core/Operations/SiEtching/AtomisticSiWetEtchingOperation.h"

#include "Core/Operations/SiEtching/AtomicStructureSimpleSiWetEtch.h"

#include <utility>

namespace Core::Operations {

boost::shared_ptr<Util::IObserver> AtomisticSiWetEtchingOperation::s_observer;

AtomisticSiWetEtchingOperation::AtomisticSiWetEtchingOperation(Workspace *workspace)
    : SiWetEtchOperation(workspace, "BCA Wet Etch", Id)
{}

void AtomisticSiWetEtchingOperation::setObserver(boost::shared_ptr<Util::IObserver> observer)
{
    s_observer = std::move(observer);
}

void AtomisticSiWetEtchingOperation::etch(Model::Automaton::TotalVolume *volume, double depth) const
{
    AtomicStructureSimpleSiWetEtch(volume, depth).runEtching();
}

} // namespace Core::Operations
