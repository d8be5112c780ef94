#include "Core/Operations/SelectVolumesOperation.h"

#include "Core/Workspace.h"
#include "Model/Automaton/TotalVolume.h"

#include <utility>

namespace Core::Operations {

using Model::Automaton::TotalVolume;

boost::shared_ptr<Util::IObserver> SelectVolumesOperation::s_observer;

SelectVolumesOperation::SelectVolumesOperation(Workspace *workspace)
    : Operation("Select volumes", Id),
      m_workspace(workspace),
      m_sequence(workspace, this)
{}

void SelectVolumesOperation::setObserver(boost::shared_ptr<Util::IObserver> observer)
{
    s_observer = std::move(observer);
}

boost::shared_ptr<TotalVolume> SelectVolumesOperation::volume() const
{
    return m_finished ? m_sequence.volume() : boost::shared_ptr<TotalVolume>();
}

void SelectVolumesOperation::next()
{
    if (m_finished)
        return;
    const bool without = !m_answer.empty() && (m_answer[0] == 'n' || m_answer[0] == 'N');
    if (!m_sequence.takeSelectedVolume() && !without) {
        m_workspace->interpreter().writeMessage(
            name() +
            ": Select a cell volume and press Enter/Return. To start without a cell volume "
            "type N and press Enter/Return.");
        m_workspace->interpreter().awaitString(this, m_answer);
        m_workspace->interpreter().awaitEnter(this);
        m_workspace->selection().setSelectionMode(true);
        return;
    }
    m_finished = true;
    end();
}

void SelectVolumesOperation::cancel()
{
    m_workspace->interpreter().clearRequest();
    m_workspace->dropOperation();
}

void SelectVolumesOperation::end()
{
    if (!m_finished)
        return;
    // Copies: while the dialog is open another window may set its observer, and whatever drops this
    // operation must not destroy it here.
    const boost::shared_ptr<Util::IObserver> observer = s_observer;
    const boost::shared_ptr<Operation> current = m_workspace->currentOperation();
    if (observer)
        observer->update();
    if (m_workspace->currentOperation() != current)
        return;
    m_workspace->interpreter().clearRequest();
    m_workspace->finishOperation();
}

} // namespace Core::Operations
