#include "Core/Operations/SiEtching/ContinousWetEtchOperation.h"

#include "Core/Operations/SiEtching/ContinuosWetEtching.h"

#include <utility>

namespace Core::Operations {

boost::shared_ptr<Util::IObserver> ContinousWetEtchOperation::s_observer;

ContinousWetEtchOperation::ContinousWetEtchOperation(Workspace *workspace)
    : SiWetEtchOperation(workspace, "Continuous Wet Etch", Id)
{}

void ContinousWetEtchOperation::setObserver(boost::shared_ptr<Util::IObserver> observer)
{
    s_observer = std::move(observer);
}

void ContinousWetEtchOperation::etch(Model::Automaton::TotalVolume *volume, double depth) const
{
    ContinuosWetEtching(volume, depth).runEtching();
}

} // namespace Core::Operations
