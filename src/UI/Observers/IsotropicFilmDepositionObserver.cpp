#include "UI/Observers/IsotropicFilmDepositionObserver.h"

#include "Core/Operations/IsotropicFilmDeposition/IsotropicFilmDepositionOperation.h"
#include "Core/Workspace.h"
#include "Model/Process/ProcessFactory.h"
#include "UI/ModalDialog.h"
#include "UI/Operations/IsotropicDepositionDialog.h"

#include <boost/pointer_cast.hpp>

namespace Ui::Observers {

IsotropicFilmDepositionObserver::IsotropicFilmDepositionObserver(Core::Workspace *workspace,
                                                                 QWidget *dialogParent)
    : m_workspace(workspace),
      m_dialogParent(dialogParent)
{}

void IsotropicFilmDepositionObserver::update()
{
    const auto operation =
        boost::dynamic_pointer_cast<Core::Operations::IsotropicFilmDepositionOperation>(
            m_workspace->currentOperation());
    if (!operation)
        return;
    const Model::Process::Process process =
        Model::Process::ProcessFactory::instance()->processByName(QStringLiteral("CVD"));
    Operations::IsotropicDepositionDialog dialog(process, m_dialogParent);
    if (!runModally(dialog))
        return;
    operation->setThickness(static_cast<float>(dialog.thickness()));
    operation->setMaterial(dialog.material());
    operation->end();
}

} // namespace Ui::Observers
