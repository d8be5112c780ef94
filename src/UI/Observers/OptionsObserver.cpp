#include "UI/Observers/OptionsObserver.h"

#include "Core/Workspace.h"

namespace Ui::Observers {

OptionsObserver::OptionsObserver(Core::Workspace *workspace, QWidget *dialogParent)
    : m_workspace(workspace),
      m_dialogParent(dialogParent)
{}

OptionsObserver::~OptionsObserver() = default;

boost::shared_ptr<Core::Operations::Operation> OptionsObserver::currentOperation() const
{
    if (!m_dialogParent)
        return {};
    return m_workspace->currentOperation();
}

} // namespace Ui::Observers
