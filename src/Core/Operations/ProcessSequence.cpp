#include "Core/Operations/ProcessSequence.h"

#include "Core/Operations/Operation.h"
#include "Core/Workspace.h"
#include "Model/Automaton/TotalVolume.h"

#include <boost/pointer_cast.hpp>

namespace Core::Operations {

using Model::Automaton::TotalVolume;

ProcessSequence::ProcessSequence(Workspace *workspace, Operation *operation)
    : m_workspace(workspace),
      m_operation(operation)
{}

bool ProcessSequence::takeSelectedVolume()
{
    for (const auto &object : m_workspace->pointer().selectedObjects()) {
        m_volume = boost::dynamic_pointer_cast<TotalVolume>(object);
        if (m_volume)
            break;
    }
    if (!m_volume)
        return false;
    m_workspace->selection().clear();
    m_workspace->selection().setSelectionMode(false);
    Util::notify(m_workspace->updateObservers());
    write(": Cell volume selected.");
    return true;
}

bool ProcessSequence::selectVolume()
{
    if (takeSelectedVolume())
        return true;
    write(": Select a cell volume and press Enter/Return.");
    m_workspace->interpreter().awaitEnter(m_operation);
    m_workspace->selection().setSelectionMode(true);
    return false;
}

void ProcessSequence::cancel()
{
    write(": Operation canceled.");
    m_workspace->interpreter().clearRequest();
    m_workspace->dropOperation();
}

void ProcessSequence::finish(bool latticeStale)
{
    m_volume->painter().rebuild();
    m_workspace->objectRecords().setLastOperation(m_volume->id(), m_operation->id());
    if (latticeStale)
        m_workspace->objectRecords().setLatticeStale(m_volume->id(), true);
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
