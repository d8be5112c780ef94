#include "UI/Observers/IsotropicFilmEtchingObserver.h"

#include "Core/Operations/IsotropicFilmEtching/IsotropicFilmEtchingOperation.h"
#include "Core/Workspace.h"
#include "Model/Process/ProcessFactory.h"
#include "UI/ModalDialog.h"
#include "UI/Operations/IsotropicEtchingDialog.h"

#include <boost/pointer_cast.hpp>

namespace Ui::Observers {

IsotropicFilmEtchingObserver::IsotropicFilmEtchingObserver(Core::Workspace *workspace,
                                                           QWidget *dialogParent)
    : m_workspace(workspace),
      m_dialogParent(dialogParent)
{}

void IsotropicFilmEtchingObserver::update()
{
    const auto operation =
        boost::dynamic_pointer_cast<Core::Operations::IsotropicFilmEtchingOperation>(
            m_workspace->currentOperation());
    if (!operation)
        return;
    const Model::Process::Process process =
        Model::Process::ProcessFactory::instance()->processByName(
            QStringLiteral("Isotropic Etching"));
    Operations::IsotropicEtchingDialog dialog(process, m_dialogParent);
    if (!runModally(dialog))
        return;
    operation->setThickness(static_cast<float>(dialog.thickness()));
    operation->setMaterial(dialog.material());
    operation->end();
}

} // namespace Ui::Observers
