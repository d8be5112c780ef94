#include "Core/Operations/ProcessSequence.h"

#include "Core/Operations/Operation.h"
#include "Core/Workspace.h"
#include "Model/Automaton/TotalVolume.h"

#include <boost/pointer_cast.hpp>

namespace Core::Operations {

using Model::Automaton::TotalVolume;

ProcessSequence::ProcessSequence(Workspace *workspace, Operation *operation,
                                 const ProcessMessages &messages)
    : m_workspace(workspace),
      m_operation(operation),
      m_messages(messages)
{}

boost::shared_ptr<TotalVolume> ProcessSequence::findVolume(Candidates candidates) const
{
    for (const auto &object : m_workspace->pointer().selectedObjects())
        if (const auto volume = boost::dynamic_pointer_cast<TotalVolume>(object))
            return volume;
    if (candidates == Candidates::SelectionOrOnlyObject) {
        const auto objects = m_workspace->document().objects();
        if (objects.size() == 1)
            return boost::dynamic_pointer_cast<TotalVolume>(objects.front());
    }
    return {};
}

bool ProcessSequence::takeSelectedVolume(Candidates candidates)
{
    m_volume = findVolume(candidates);
    if (!m_volume)
        return false;
    m_workspace->selection().clear();
    m_workspace->selection().setSelectionMode(false);
    Util::notify(m_workspace->updateObservers());
    write(m_messages.selected);
    return true;
}

bool ProcessSequence::selectVolume(Candidates candidates)
{
    if (takeSelectedVolume(candidates))
        return true;
    write(m_messages.request);
    m_workspace->interpreter().awaitEnter(m_operation);
    m_workspace->selection().setSelectionMode(true);
    return false;
}

void ProcessSequence::selectThenAsk(const boost::shared_ptr<Util::IObserver> &observer,
                                    Candidates candidates)
{
    if (m_volume || !selectVolume(candidates))
        return;
    // A copy: the dialog may end the operation that holds the observer.
    const boost::shared_ptr<Util::IObserver> held = observer;
    if (held)
        held->update();
}

void ProcessSequence::cancel()
{
    write(m_messages.canceled);
    m_workspace->interpreter().clearRequest();
    m_workspace->dropOperation();
}

void ProcessSequence::finish(bool latticeStale)
{
    m_volume->painter().rebuild();
    conclude(latticeStale ? Lattice::Stale : Lattice::AsBefore);
}

void ProcessSequence::conclude(Lattice lattice)
{
    m_workspace->objectRecords().setLastOperation(m_volume->id(), m_operation->id());
    if (lattice != Lattice::AsBefore)
        m_workspace->objectRecords().setLatticeStale(m_volume->id(), lattice == Lattice::Stale);
    Util::notify(m_workspace->updateObservers());
    write(": Operation finished.");
    m_workspace->interpreter().clearRequest();
    m_workspace->finishOperation();
}

void ProcessSequence::write(const std::string &suffix)
{
    m_workspace->interpreter().writeMessage(m_operation->name() + suffix);
}

} // namespace Core::Operations
